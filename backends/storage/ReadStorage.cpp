#include "storage/ReadStorage.h"

#include "storage/ElementEnumerator.h"
#include "storage/ElementName.h"
#include "storage/ElementStatus.h"
#include "storage/OpenMode.h"
#include "storage/ReadStream.h"

namespace StorageBackend {

using CompoundFormat::EntryType;

HRESULT ReadStorage::CreateStream(const OLECHAR*, DWORD, DWORD, DWORD, IStream** stream) {
    if (!stream)
        return STG_E_INVALIDPOINTER;
    *stream = nullptr;
    return STG_E_ACCESSDENIED;
}

HRESULT ReadStorage::CreateStorage(const OLECHAR*, DWORD, DWORD, DWORD, IStorage** storage) {
    if (!storage)
        return STG_E_INVALIDPOINTER;
    *storage = nullptr;
    return STG_E_ACCESSDENIED;
}

HRESULT ReadStorage::OpenStream(const OLECHAR* name, void*, DWORD mode, DWORD, IStream** stream) {
    if (!stream)
        return STG_E_INVALIDPOINTER;
    *stream = nullptr;
    return guarded([&] {
        const auto found = find(name, EntryType::Stream, mode);
        if (!found)
            return found.error();
        const auto opened = openStream(file, **found);
        if (!opened)
            return opened.error();
        *stream = *opened;
        return S_OK;
    });
}

HRESULT ReadStorage::OpenStorage(const OLECHAR* name, IStorage*, DWORD mode, SNB exclude, DWORD,
                                 IStorage** storage) {
    if (!storage)
        return STG_E_INVALIDPOINTER;
    *storage = nullptr;
    if (exclude)
        return E_NOTIMPL;
    return guarded([&] {
        const auto found = find(name, EntryType::Storage, mode);
        if (!found)
            return found.error();
        *storage = new ReadStorage(file, **found);
        return S_OK;
    });
}

Result<const Element*> ReadStorage::find(const OLECHAR* name, EntryType type, DWORD mode) const {
    if (!name)
        return tl::unexpected(STG_E_INVALIDPOINTER);
    if (!isForReading(mode))
        return tl::unexpected(STG_E_ACCESSDENIED);
    if (!isExclusive(mode))
        return tl::unexpected(STG_E_INVALIDFLAG);
    const auto units = toElementName(name);
    if (!units)
        return tl::unexpected(STG_E_INVALIDNAME);
    const Element* found = file->find(*element, *units);
    if (!found || found->type != type)
        return tl::unexpected(STG_E_FILENOTFOUND);
    return found;
}

HRESULT ReadStorage::Commit(DWORD) {
    return S_OK;
}

HRESULT ReadStorage::EnumElements(DWORD, void*, DWORD, IEnumSTATSTG** elements) {
    if (!elements)
        return STG_E_INVALIDPOINTER;
    *elements = nullptr;
    return guarded([&] {
        *elements = new ElementEnumerator(file, *element);
        return S_OK;
    });
}

HRESULT ReadStorage::Stat(STATSTG* status, DWORD flags) {
    if (!status)
        return STG_E_INVALIDPOINTER;
    return guarded([&] { return describe(*element, flags, *status); });
}

} // namespace StorageBackend
