#pragma once

#include "platform/Stream.h"

// Compound files: storages in storages, with streams of bytes in them. Names have 1 to 31 UTF-16 units, keep
// their letter case and are looked up without regard to it. Paths are looked up as `System.h` tells.
//
// What is here opens existing files for reading alone, and makes new ones by writing alone. Null pointers
// give `STG_E_INVALIDPOINTER`, and a method without need `E_NOTIMPL`.

using OLECHAR = WCHAR;
using SNB = OLECHAR**;
using PSECURITY_DESCRIPTOR = void*;

constexpr DWORD STGFMT_STORAGE = 0;
constexpr DWORD STGFMT_NATIVE = 1;
constexpr DWORD STGFMT_FILE = 3;
constexpr DWORD STGFMT_ANY = 4;
constexpr DWORD STGFMT_DOCFILE = 5;

constexpr DWORD STGC_DEFAULT = 0;

constexpr IID IID_IStorage = {0x0000000B, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr IID IID_IEnumSTATSTG = {
    0x0000000D, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

/// How a file is made.
struct STGOPTIONS {
    WORD usVersion; ///< 1
    WORD reserved;
    ULONG ulSectorSize; ///< 512, or 4096 with `STGFMT_DOCFILE` alone
};

/// Goes through the elements of a storage as they were when it was made. One thread at a time.
class IEnumSTATSTG : public IUnknown {
public:
    /// S_OK, or S_FALSE with fewer than `count` at the end. `fetched` may be null for a `count` of 1.
    virtual HRESULT Next(ULONG count, STATSTG* elements, ULONG* fetched) = 0;
    /// S_FALSE when there are fewer.
    virtual HRESULT Skip(ULONG count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(IEnumSTATSTG** copy) = 0;

protected:
    ~IEnumSTATSTG() = default;
};

/// A folder of a compound file. Storages and streams that are read may live on different threads, each on one
/// at a time; those that are written belong to one thread together. Each keeps its file open.
class IStorage : public IUnknown {
public:
    /// Of a storage that is written. `STG_E_FILEALREADYEXISTS` for a name in use whatever the mode,
    /// `STG_E_INVALIDNAME`. The stream can be written at any place and grows, but is neither read nor
    /// shortened.
    virtual HRESULT CreateStream(const OLECHAR* name, DWORD mode, DWORD reserved1, DWORD reserved2,
                                 IStream** stream) = 0;
    /// Of a storage that is read, where a stream may be opened more than once. `STG_E_FILENOTFOUND` without a
    /// stream of that name, `STG_E_INVALIDFLAG` without `STGM_SHARE_EXCLUSIVE`, `STG_E_ACCESSDENIED` for
    /// writing, `STG_E_DOCFILECORRUPT` for a size that the file cannot hold. Damage farther inside comes from
    /// `Read`.
    virtual HRESULT OpenStream(const OLECHAR* name, void* reserved1, DWORD mode, DWORD reserved2,
                               IStream** stream) = 0;
    virtual HRESULT CreateStorage(const OLECHAR* name, DWORD mode, DWORD reserved1, DWORD reserved2,
                                  IStorage** storage) = 0;
    /// As `OpenStream`.
    virtual HRESULT OpenStorage(const OLECHAR* name, IStorage* priority, DWORD mode, SNB exclude,
                                DWORD reserved, IStorage** storage) = 0;
    /// E_NOTIMPL, as `MoveElementTo`: callers copy streams by themselves.
    virtual HRESULT CopyTo(DWORD excludedCount, const IID* excluded, SNB excludedNames,
                           IStorage* destination) = 0;
    virtual HRESULT MoveElementTo(const OLECHAR* name, IStorage* destination, const OLECHAR* newName,
                                  DWORD flags) = 0;
    /// Of the root of a new file: puts the file in its place, whole and in one step, once; all of it is
    /// closed then, and gives `STG_E_REVERTED`. Until then and without it nothing is there. S_OK and no
    /// effect elsewhere.
    virtual HRESULT Commit(DWORD flags) = 0;
    /// E_NOTIMPL, as all that follow but for `EnumElements` and `Stat`: written files have no second
    /// thoughts.
    virtual HRESULT Revert() = 0;
    /// Of a storage that is read, sorted by length and then by letters. E_NOTIMPL for one that is written.
    virtual HRESULT EnumElements(DWORD reserved1, void* reserved2, DWORD reserved3,
                                 IEnumSTATSTG** elements) = 0;
    virtual HRESULT DestroyElement(const OLECHAR* name) = 0;
    virtual HRESULT RenameElement(const OLECHAR* oldName, const OLECHAR* newName) = 0;
    virtual HRESULT SetElementTimes(const OLECHAR* name, const FILETIME* created, const FILETIME* accessed,
                                    const FILETIME* modified) = 0;
    virtual HRESULT SetClass(const CLSID& clsid) = 0;
    virtual HRESULT SetStateBits(DWORD stateBits, DWORD mask) = 0;
    virtual HRESULT Stat(STATSTG* status, DWORD flags) = 0;

protected:
    ~IStorage() = default;
};

extern "C" {

/// Opens a compound file for reading; sharing and transactions make no difference then. `object` becomes an
/// `IStorage`, the only interface there is.
///
/// `STG_E_FILENOTFOUND`, `STG_E_PATHNOTFOUND`; `STG_E_ACCESSDENIED` for a file that can't be opened, for what
/// is no regular file, and for writing; `STG_E_FILEALREADYEXISTS` for a file that is no compound file;
/// `STG_E_INVALIDHEADER`, `STG_E_DOCFILECORRUPT` for a damaged one; `STG_E_READFAULT`;
/// `STG_E_INSUFFICIENTMEMORY` also for more than a million elements; `STG_E_INVALIDPARAMETER` for a format
/// that is no storage. Any thread.
KESTO_EXPORT HRESULT StgOpenStorageEx(const WCHAR* path, DWORD mode, DWORD format, DWORD attributes,
                                      STGOPTIONS* options, PSECURITY_DESCRIPTOR security, const IID& riid,
                                      void** object);

/// Begins a new compound file, which takes the place of another one with `STGM_CREATE` alone, and by `Commit`
/// alone. `options` may be null for sectors of 512 bytes: each stream then has at most 2 GiB; with 4096 the
/// file has 8 TiB. Streams go to the disk as they are written, but for those below 4096 bytes.
///
/// `STG_E_FILEALREADYEXISTS`, `STG_E_PATHNOTFOUND`, `STG_E_ACCESSDENIED`, `STG_E_MEDIUMFULL`; the last two
/// and `STG_E_WRITEFAULT` come from writing and committing too.
KESTO_EXPORT HRESULT StgCreateStorageEx(const WCHAR* path, DWORD mode, DWORD format, DWORD attributes,
                                        STGOPTIONS* options, PSECURITY_DESCRIPTOR security, const IID& riid,
                                        void** object);

} // extern "C"
