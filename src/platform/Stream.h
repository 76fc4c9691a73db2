#pragma once

#include "platform/Com.h"
#include "platform/Export.h"

#include <cstddef>

union LARGE_INTEGER {
    __int64 QuadPart;
};

union ULARGE_INTEGER {
    UINT64 QuadPart;
};

/// 100-nanosecond units since the beginning of the year 1601, UTC.
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

enum STGTY : DWORD { STGTY_STORAGE = 1, STGTY_STREAM = 2, STGTY_LOCKBYTES = 3, STGTY_PROPERTY = 4 };
enum STATFLAG : DWORD { STATFLAG_DEFAULT = 0, STATFLAG_NONAME = 1 };
enum STREAM_SEEK : DWORD { STREAM_SEEK_SET = 0, STREAM_SEEK_CUR = 1, STREAM_SEEK_END = 2 };

/// What a storage or a stream is. The receiver frees `pwcsName` with `CoTaskMemFree`.
struct STATSTG {
    WCHAR* pwcsName;
    DWORD type; ///< an STGTY
    ULARGE_INTEGER cbSize;
    FILETIME mtime;
    FILETIME ctime;
    FILETIME atime;
    DWORD grfMode;
    DWORD grfLocksSupported;
    CLSID clsid;
    DWORD grfStateBits;
    DWORD reserved;
};

constexpr IID IID_ISequentialStream = {
    0x0C733A30, 0x2A1C, 0x11CE, {0xAD, 0xE5, 0x00, 0xAA, 0x00, 0x44, 0x77, 0x3D}};
constexpr IID IID_IStream = {0x0000000C, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

class ISequentialStream : public IUnknown {
public:
    /// Reads on from the place. S_OK with the number of bytes in `*bytesRead`, below `count` at the end
    /// alone.
    virtual HRESULT Read(void* buffer, ULONG count, ULONG* bytesRead) = 0;
    virtual HRESULT Write(const void* buffer, ULONG count, ULONG* bytesWritten) = 0;

protected:
    ~ISequentialStream() = default;
};

/// Bytes with a place. One thread at a time.
class IStream : public ISequentialStream {
public:
    /// `newPlace` may be null. A place before the start is refused with a negative result; one behind the end
    /// is not.
    virtual HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPlace) = 0;
    virtual HRESULT SetSize(ULARGE_INTEGER size) = 0;
    virtual HRESULT CopyTo(IStream* destination, ULARGE_INTEGER count, ULARGE_INTEGER* bytesRead,
                           ULARGE_INTEGER* bytesWritten) = 0;
    virtual HRESULT Commit(DWORD flags) = 0;
    virtual HRESULT Revert() = 0;
    virtual HRESULT LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD lockType) = 0;
    virtual HRESULT UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD lockType) = 0;
    virtual HRESULT Stat(STATSTG* status, DWORD flags) = 0;
    virtual HRESULT Clone(IStream** copy) = 0;

protected:
    ~IStream() = default;
};

extern "C" {

/// A stream over a copy of `size` bytes, the caller's to release; null without memory. `initial` may be null
/// for an empty one.
KESTO_EXPORT IStream* SHCreateMemStream(const BYTE* initial, UINT size);

KESTO_EXPORT void* CoTaskMemAlloc(std::size_t size);
/// Null is allowed.
KESTO_EXPORT void CoTaskMemFree(void* memory);

} // extern "C"
