#include "storage/WriteStorage.h"

#include "storage/ElementName.h"
#include "storage/OpenMode.h"

#include "system/StreamObject.h"

namespace StorageBackend {

namespace {

class WriteStream final : public SystemBackend::StreamObject {
public:
    WriteStream(std::shared_ptr<CompoundWriter> newFile, NewElement& newElement, UINT64 startPlace = 0)
        : StreamObject(startPlace)
        , writer(std::move(newFile))
        , element(&newElement) {}

    HRESULT Read(void* buffer, ULONG count, ULONG* bytesRead) override;
    HRESULT Write(const void* buffer, ULONG count, ULONG* bytesWritten) override;
    HRESULT SetSize(ULARGE_INTEGER size) override;
    HRESULT Stat(STATSTG* status, DWORD flags) override;
    HRESULT Clone(IStream** copy) override;

private:
    UINT64 length() const override { return element->size; }

    std::shared_ptr<CompoundWriter> writer;
    NewElement* element; // in `writer`
};

HRESULT WriteStream::Read(void*, ULONG, ULONG* bytesRead) {
    if (bytesRead)
        *bytesRead = 0;
    return STG_E_ACCESSDENIED;
}

HRESULT WriteStream::Write(const void* buffer, ULONG count, ULONG* bytesWritten) {
    if (bytesWritten)
        *bytesWritten = 0;
    if (!buffer)
        return STG_E_INVALIDPOINTER;
    if (count == 0)
        return writer->state();
    return guarded([&] {
        const HRESULT written =
            writer->write(*element, place, {static_cast<const std::byte*>(buffer), count});
        if (FAILED(written))
            return written;
        place += count;
        if (bytesWritten)
            *bytesWritten = count;
        return S_OK;
    });
}

HRESULT WriteStream::SetSize(ULARGE_INTEGER size) {
    if (size.QuadPart < element->size)
        return STG_E_INVALIDFUNCTION;
    return guarded([&] { return writer->grow(*element, size.QuadPart); });
}

HRESULT WriteStream::Stat(STATSTG* status, DWORD flags) {
    if (!status)
        return STG_E_INVALIDPOINTER;
    if (flags != STATFLAG_NONAME)
        return E_NOTIMPL; // who writes a stream knows what it is called
    *status = {};
    status->type = STGTY_STREAM;
    status->cbSize.QuadPart = element->size;
    status->grfMode = STGM_WRITE | STGM_SHARE_EXCLUSIVE;
    return S_OK;
}

HRESULT WriteStream::Clone(IStream** copy) {
    if (!copy)
        return STG_E_INVALIDPOINTER;
    *copy = nullptr;
    return guarded([&] {
        *copy = new WriteStream(writer, *element, place);
        return S_OK;
    });
}

} // namespace

Result<NewElement*> WriteStorage::add(const OLECHAR* name, DWORD mode) {
    if (!name)
        return tl::unexpected(STG_E_INVALIDPOINTER);
    if (!isForWriting(mode) || !isExclusive(mode))
        return tl::unexpected(STG_E_INVALIDFLAG);
    const auto units = toElementName(name);
    if (!units || !isAllowedForNewElements(*units))
        return tl::unexpected(STG_E_INVALIDNAME);
    if (const HRESULT state = writer->state(); FAILED(state))
        return tl::unexpected(state);
    auto made = std::make_unique<NewElement>();
    const auto [place, isNew] = element->children.try_emplace(*units, std::move(made));
    if (!isNew)
        return tl::unexpected(STG_E_FILEALREADYEXISTS);
    return place->second.get();
}

HRESULT WriteStorage::CreateStream(const OLECHAR* name, DWORD mode, DWORD, DWORD, IStream** stream) {
    if (!stream)
        return STG_E_INVALIDPOINTER;
    *stream = nullptr;
    return guarded([&] {
        const auto added = add(name, mode);
        if (!added)
            return added.error();
        (*added)->isStream = true;
        *stream = new WriteStream(writer, **added);
        return S_OK;
    });
}

HRESULT WriteStorage::CreateStorage(const OLECHAR* name, DWORD mode, DWORD, DWORD, IStorage** storage) {
    if (!storage)
        return STG_E_INVALIDPOINTER;
    *storage = nullptr;
    return guarded([&] {
        const auto added = add(name, mode);
        if (!added)
            return added.error();
        *storage = new WriteStorage(writer, **added);
        return S_OK;
    });
}

HRESULT WriteStorage::OpenStream(const OLECHAR*, void*, DWORD, DWORD, IStream** stream) {
    if (!stream)
        return STG_E_INVALIDPOINTER;
    *stream = nullptr;
    return STG_E_ACCESSDENIED;
}

HRESULT WriteStorage::OpenStorage(const OLECHAR*, IStorage*, DWORD, SNB, DWORD, IStorage** storage) {
    if (!storage)
        return STG_E_INVALIDPOINTER;
    *storage = nullptr;
    return STG_E_ACCESSDENIED;
}

HRESULT WriteStorage::Commit(DWORD) {
    if (element != &writer->root())
        return writer->state();
    return guarded([&] { return writer->commit(); });
}

HRESULT WriteStorage::EnumElements(DWORD, void*, DWORD, IEnumSTATSTG** elements) {
    if (!elements)
        return STG_E_INVALIDPOINTER;
    *elements = nullptr;
    return E_NOTIMPL;
}

HRESULT WriteStorage::Stat(STATSTG* status, DWORD flags) {
    if (!status)
        return STG_E_INVALIDPOINTER;
    if (flags != STATFLAG_NONAME)
        return E_NOTIMPL; // as for streams
    *status = {};
    status->type = STGTY_STORAGE;
    status->grfMode = STGM_WRITE | STGM_SHARE_EXCLUSIVE;
    return S_OK;
}

} // namespace StorageBackend
