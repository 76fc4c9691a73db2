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

// How a storage or stream is opened: access, sharing, and what happens to what is there already.
constexpr DWORD STGM_READ = 0x0;
constexpr DWORD STGM_WRITE = 0x1;
constexpr DWORD STGM_READWRITE = 0x2;
constexpr DWORD STGM_SHARE_EXCLUSIVE = 0x10;
constexpr DWORD STGM_SHARE_DENY_WRITE = 0x20;
constexpr DWORD STGM_SHARE_DENY_READ = 0x30;
constexpr DWORD STGM_SHARE_DENY_NONE = 0x40;
constexpr DWORD STGM_FAILIFTHERE = 0x0;
constexpr DWORD STGM_CREATE = 0x1000;
constexpr DWORD STGM_DIRECT = 0x0;
constexpr DWORD STGM_TRANSACTED = 0x10000;
constexpr DWORD STGM_NOSNAPSHOT = 0x200000;

// Results of storages and streams.
constexpr HRESULT STG_E_INVALIDFUNCTION = static_cast<HRESULT>(0x80030001);
constexpr HRESULT STG_E_FILENOTFOUND = static_cast<HRESULT>(0x80030002);
constexpr HRESULT STG_E_PATHNOTFOUND = static_cast<HRESULT>(0x80030003);
constexpr HRESULT STG_E_ACCESSDENIED = static_cast<HRESULT>(0x80030005);
constexpr HRESULT STG_E_INSUFFICIENTMEMORY = static_cast<HRESULT>(0x80030008);
constexpr HRESULT STG_E_INVALIDPOINTER = static_cast<HRESULT>(0x80030009);
constexpr HRESULT STG_E_WRITEFAULT = static_cast<HRESULT>(0x8003001D);
constexpr HRESULT STG_E_READFAULT = static_cast<HRESULT>(0x8003001E);
constexpr HRESULT STG_E_FILEALREADYEXISTS = static_cast<HRESULT>(0x80030050);
constexpr HRESULT STG_E_INVALIDPARAMETER = static_cast<HRESULT>(0x80030057);
constexpr HRESULT STG_E_MEDIUMFULL = static_cast<HRESULT>(0x80030070);
constexpr HRESULT STG_E_INVALIDHEADER = static_cast<HRESULT>(0x800300FB);
constexpr HRESULT STG_E_INVALIDNAME = static_cast<HRESULT>(0x800300FC);
constexpr HRESULT STG_E_INVALIDFLAG = static_cast<HRESULT>(0x800300FF);
constexpr HRESULT STG_E_REVERTED = static_cast<HRESULT>(0x80030102);
constexpr HRESULT STG_E_CANTSAVE = static_cast<HRESULT>(0x80030103);
constexpr HRESULT STG_E_DOCFILECORRUPT = static_cast<HRESULT>(0x80030109);

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
    /// Zeros come where the stream grows. `STG_E_ACCESSDENIED`, as from `Write`, for one that is only read.
    virtual HRESULT SetSize(ULARGE_INTEGER size) = 0;
    /// From the place on, as far as there are bytes; the counts may be null.
    virtual HRESULT CopyTo(IStream* destination, ULARGE_INTEGER count, ULARGE_INTEGER* bytesRead,
                           ULARGE_INTEGER* bytesWritten) = 0;
    virtual HRESULT Commit(DWORD flags) = 0;
    virtual HRESULT Revert() = 0;
    virtual HRESULT LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD lockType) = 0;
    virtual HRESULT UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD lockType) = 0;
    virtual HRESULT Stat(STATSTG* status, DWORD flags) = 0;
    /// The same bytes with a place of its own, which starts out at this one's.
    virtual HRESULT Clone(IStream** copy) = 0;

protected:
    ~IStream() = default;
};

extern "C" {

/// A stream over a copy of `size` bytes, which can be written and grows; the caller's to release; null
/// without memory. `initial` may be null for an empty one. One thread at a time for a stream and its clones.
KESTO_EXPORT IStream* SHCreateMemStream(const BYTE* initial, UINT size);

KESTO_EXPORT void* CoTaskMemAlloc(std::size_t size);
/// Null is allowed.
KESTO_EXPORT void CoTaskMemFree(void* memory);

} // extern "C"
