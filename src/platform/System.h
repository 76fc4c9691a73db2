#pragma once

#include "platform/Export.h"
#include "platform/WinTypes.h"

// Files, paths and modules. Every function that asks after a path takes it as it stands first, then with each
// backslash as a slash, then part by part ignoring case; the first that exists wins, and nothing is created.
// Wide paths are UTF-32 and become UTF-8; narrow ones are bytes, taken as they are. Any thread.

constexpr UINT CP_UTF8 = 65001;
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x1;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD MOVEFILE_REPLACE_EXISTING = 0x1;
constexpr DWORD MOVEFILE_COPY_ALLOWED = 0x2;
constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 0x2;
constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x4;

constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD FILE_SHARE_READ = 0x1;
constexpr DWORD FILE_SHARE_WRITE = 0x2;
constexpr DWORD FILE_SHARE_DELETE = 0x4;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD FILE_BEGIN = 0;
constexpr DWORD FILE_CURRENT = 1;
constexpr DWORD FILE_END = 2;
constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFF;
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(~UINT_PTR{0});

using FARPROC = void (*)();
// NOLINTBEGIN(bugprone-reserved-identifier): published names
using LPSECURITY_ATTRIBUTES = struct _SECURITY_ATTRIBUTES*;
using LPOVERLAPPED = struct _OVERLAPPED*;
// NOLINTEND(bugprone-reserved-identifier)

extern "C" {

/// What `_stat64i32` tells; of its fields only those in use.
struct _stat64i32 {
    WORD st_mode;
    std::int32_t st_size; ///< held at 2^31 - 1 for larger files, which still succeed
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow" // the published function has the name of its record
/// 0, or -1 with the reason in errno: ENOENT without such a file or folder, EACCES behind a closed one.
KESTO_EXPORT int _stat64i32(const char* path, struct _stat64i32* status);
#pragma GCC diagnostic pop
/// Removes a file, or a link itself, as the C runtime's `remove` does; a folder stays, also an empty one. The
/// path rules above find the folder, the last part counts letter for letter. 0, or -1.
KESTO_EXPORT int _unlink(const char* path);

/// Gives a file another name, in place of a file that has it; in one step, or by copying where the two names
/// lie on different file systems. A copy whose original can't be removed is success too. The path rules above
/// find the folder of `to`, whose last part counts letter for letter. Only `MOVEFILE_REPLACE_EXISTING`
/// together with `MOVEFILE_COPY_ALLOWED` is known.
KESTO_EXPORT BOOL MoveFileExW(const WCHAR* from, const WCHAR* to, DWORD flags);

/// One of the attributes above; read-only is a file that nobody may write to, whoever asks.
/// `INVALID_FILE_ATTRIBUTES` without such a file or folder.
KESTO_EXPORT DWORD GetFileAttributesW(const WCHAR* path);

/// Whether there is such a file or folder.
KESTO_EXPORT BOOL PathFileExistsW(const WCHAR* path);

/// Opens a file for reading: only `GENERIC_READ` with `OPEN_EXISTING` is known, and sharing is never refused.
/// What is no plain file (a folder, a pipe, a device) counts as denied. `INVALID_HANDLE_VALUE`, with the
/// reason in `GetLastError`, on failure; else a handle for `CloseHandle`, for one thread at a time.
KESTO_EXPORT HANDLE CreateFileW(const WCHAR* path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                DWORD disposition, DWORD attributes, HANDLE templateFile);
/// Reads on from the position. Fewer bytes than asked for, down to none, are read at the end of the file
/// alone, and that is success. A few KiB are read ahead: what another program writes there in between may
/// not be seen. FALSE with the reason in `GetLastError`. `overlapped` is null.
KESTO_EXPORT BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD count, DWORD* read, LPOVERLAPPED overlapped);
/// Moves the position, also beyond the end. `distanceHigh` may be null; else it holds the upper half of the
/// distance and receives that of the position. The lower half of the position: only together with
/// a `GetLastError` that is not `NO_ERROR` does `INVALID_SET_FILE_POINTER` mean failure.
KESTO_EXPORT DWORD SetFilePointer(HANDLE file, LONG distance, LONG* distanceHigh, DWORD method);
/// Of the kinds of handles, only those of files come here.
KESTO_EXPORT BOOL CloseHandle(HANDLE handle);

/// The folder for temporary files with a separator at its end. The length without the terminator; or, when
/// `length` is too small for it, the length that is needed with the terminator; 0 on failure.
KESTO_EXPORT DWORD GetTempPathW(DWORD length, WCHAR* buffer);

/// The file that `module` was loaded from, or the host program for null. The length without the terminator;
/// `size` when it was cut to fit; 0 on failure.
KESTO_EXPORT DWORD GetModuleFileNameW(HMODULE module, WCHAR* filename, DWORD size);
/// The module that holds `address`. Only `GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS` together with
/// `GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT` is known.
KESTO_EXPORT BOOL GetModuleHandleExW(DWORD flags, const WCHAR* address, HMODULE* module);
/// Null when the file is missing or is no module. Loading again counts a user.
KESTO_EXPORT HMODULE LoadLibraryW(const WCHAR* filename);
KESTO_EXPORT BOOL FreeLibrary(HMODULE module);
KESTO_EXPORT FARPROC GetProcAddress(HMODULE module, const CHAR* name);

/// Converts `length` units, or up to and with the terminator for -1, and gives the units written; with
/// `outLength` 0 the units needed. 0 on failure: an unknown code page (only `CP_UTF8` is known) or a buffer
/// too small. What is not valid becomes U+FFFD.
KESTO_EXPORT int MultiByteToWideChar(UINT codePage, DWORD flags, const CHAR* text, int length, WCHAR* out,
                                     int outLength);
KESTO_EXPORT int WideCharToMultiByte(UINT codePage, DWORD flags, const WCHAR* text, int length, CHAR* out,
                                     int outLength, const CHAR* defaultChar, BOOL* usedDefaultChar);

} // extern "C"
