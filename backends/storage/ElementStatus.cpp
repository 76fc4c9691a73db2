#include "storage/ElementStatus.h"

#include "storage/ElementName.h"

#include <algorithm>

namespace StorageBackend {

namespace {

constexpr FILETIME fileTime(UINT64 time) {
    return {static_cast<DWORD>(time), static_cast<DWORD>(time >> 32U)};
}

} // namespace

HRESULT describe(const Element& element, DWORD flags, STATSTG& status) {
    status = {};
    if (flags != STATFLAG_NONAME) {
        const std::wstring name = toWideName(element.name);
        status.pwcsName = static_cast<WCHAR*>(CoTaskMemAlloc((name.size() + 1) * sizeof(WCHAR)));
        if (!status.pwcsName)
            return STG_E_INSUFFICIENTMEMORY;
        std::copy_n(name.c_str(), name.size() + 1, status.pwcsName);
    }
    status.type = element.isStream() ? STGTY_STREAM : STGTY_STORAGE;
    status.cbSize.QuadPart = element.isStream() ? element.size : 0;
    status.mtime = fileTime(element.modified);
    status.ctime = fileTime(element.created);
    status.clsid = element.clsid;
    status.grfStateBits = element.stateBits;
    return S_OK;
}

} // namespace StorageBackend
