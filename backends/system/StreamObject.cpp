#include "system/StreamObject.h"

#include <algorithm>
#include <array>
#include <limits>

namespace SystemBackend {

HRESULT StreamObject::QueryInterface(const IID& riid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (riid != IID_IUnknown && riid != IID_ISequentialStream && riid != IID_IStream)
        return E_NOINTERFACE;
    *object = static_cast<IStream*>(this);
    AddRef();
    return S_OK;
}

ULONG StreamObject::AddRef() {
    return ++users;
}

ULONG StreamObject::Release() {
    const ULONG left = --users;
    if (left == 0)
        delete this;
    return left;
}

HRESULT StreamObject::Write(const void*, ULONG, ULONG* bytesWritten) {
    if (bytesWritten)
        *bytesWritten = 0;
    return STG_E_ACCESSDENIED;
}

HRESULT StreamObject::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPlace) {
    if (origin != STREAM_SEEK_SET && origin != STREAM_SEEK_CUR && origin != STREAM_SEEK_END)
        return STG_E_INVALIDFUNCTION;
    const UINT64 base = origin == STREAM_SEEK_SET ? 0 : origin == STREAM_SEEK_CUR ? place : length();
    __int64 target = 0;
    if (__builtin_add_overflow(base, move.QuadPart, &target) || target < 0)
        return STG_E_INVALIDFUNCTION;
    place = static_cast<UINT64>(target);
    if (newPlace)
        newPlace->QuadPart = place;
    return S_OK;
}

HRESULT StreamObject::SetSize(ULARGE_INTEGER) {
    return STG_E_ACCESSDENIED;
}

HRESULT StreamObject::CopyTo(IStream* destination, ULARGE_INTEGER count, ULARGE_INTEGER* bytesRead,
                             ULARGE_INTEGER* bytesWritten) {
    if (!destination)
        return STG_E_INVALIDPOINTER;
    std::array<BYTE, std::size_t{32} * 1024> buffer;
    UINT64 read = 0;
    UINT64 written = 0;
    HRESULT result = S_OK;
    while (SUCCEEDED(result) && read < count.QuadPart) {
        const auto piece = static_cast<ULONG>(std::min<UINT64>(buffer.size(), count.QuadPart - read));
        ULONG got = 0;
        result = Read(buffer.data(), piece, &got);
        if (FAILED(result) || got == 0)
            break;
        read += got;
        ULONG put = 0;
        result = destination->Write(buffer.data(), got, &put);
        written += put;
        if (got < piece)
            break;
    }
    if (bytesRead)
        bytesRead->QuadPart = read;
    if (bytesWritten)
        bytesWritten->QuadPart = written;
    return result;
}

HRESULT StreamObject::Commit(DWORD) {
    return S_OK;
}

HRESULT StreamObject::Revert() {
    return S_OK;
}

HRESULT StreamObject::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) {
    return STG_E_INVALIDFUNCTION;
}

HRESULT StreamObject::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) {
    return STG_E_INVALIDFUNCTION;
}

} // namespace SystemBackend
