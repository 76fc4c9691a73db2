#include "platform/StructuredStorage.h"

#include "storage/OpenMode.h"
#include "storage/ReadStorage.h"
#include "storage/WriteStorage.h"

#include "system/PathResolver.h"

#include <unistd.h>

namespace StorageBackend {

namespace {

constexpr bool isStorageFormat(DWORD format) {
    return format == STGFMT_STORAGE || format == STGFMT_ANY || format == STGFMT_DOCFILE;
}

/// The power of two that is a sector's size; none for a size that is refused.
std::optional<std::uint32_t> sectorShiftOf(DWORD format, const STGOPTIONS* options) {
    if (!options || options->ulSectorSize == 512)
        return 9;
    return options->ulSectorSize == 4096 && format == STGFMT_DOCFILE ? std::optional(12U) : std::nullopt;
}

HRESULT checkRequest(const WCHAR* path, DWORD format, const IID& riid) {
    if (!path)
        return STG_E_INVALIDPOINTER;
    if (!*path)
        return STG_E_INVALIDNAME;
    if (!isStorageFormat(format))
        return STG_E_INVALIDPARAMETER;
    return riid == IID_IStorage || riid == IID_IUnknown ? S_OK : E_NOINTERFACE;
}

HRESULT openStorage(const WCHAR* path, void** object) {
    auto file = CompoundFile::open(SystemBackend::resolvePath(SystemBackend::toUtf8(path)));
    if (!file)
        return file.error();
    const Element& root = (*file)->element(CompoundFile::root);
    *object = static_cast<IStorage*>(new ReadStorage(std::move(*file), root));
    return S_OK;
}

HRESULT createStorage(const WCHAR* path, DWORD mode, std::uint32_t sectorShift, void** object) {
    const std::string place = SystemBackend::resolvePathForWriting(SystemBackend::toUtf8(path));
    if ((mode & STGM_CREATE) == 0 && ::access(place.c_str(), F_OK) == 0)
        return STG_E_FILEALREADYEXISTS;
    auto writer = std::make_shared<CompoundWriter>(place, sectorShift);
    const HRESULT state = writer->state();
    if (FAILED(state))
        return state == STG_E_FILENOTFOUND ? STG_E_PATHNOTFOUND : state; // of a file to be made, the folder
    NewElement& root = writer->root();
    *object = static_cast<IStorage*>(new WriteStorage(std::move(writer), root));
    return S_OK;
}

} // namespace

} // namespace StorageBackend

extern "C" {

HRESULT StgOpenStorageEx(const WCHAR* path, DWORD mode, DWORD format, DWORD, STGOPTIONS*,
                         PSECURITY_DESCRIPTOR, const IID& riid, void** object) {
    using namespace StorageBackend;
    if (!object)
        return STG_E_INVALIDPOINTER;
    *object = nullptr;
    if (const HRESULT refusal = checkRequest(path, format, riid); FAILED(refusal))
        return refusal;
    if (!isForReading(mode))
        return STG_E_ACCESSDENIED;
    return guarded([&] { return openStorage(path, object); });
}

HRESULT StgCreateStorageEx(const WCHAR* path, DWORD mode, DWORD format, DWORD, STGOPTIONS* options,
                           PSECURITY_DESCRIPTOR, const IID& riid, void** object) {
    using namespace StorageBackend;
    if (!object)
        return STG_E_INVALIDPOINTER;
    *object = nullptr;
    if (const HRESULT refusal = checkRequest(path, format, riid); FAILED(refusal))
        return refusal;
    const auto shift = sectorShiftOf(format, options);
    if (!shift)
        return STG_E_INVALIDPARAMETER;
    if (!isForWriting(mode))
        return STG_E_INVALIDFLAG;
    return guarded([&] { return createStorage(path, mode, *shift, object); });
}

} // extern "C"
