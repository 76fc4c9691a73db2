#pragma once

#include "platform/Export.h"
#include "platform/WinTypes.h"

// Values that the platform would have remembered. They come from a plain file in the user's configuration
// folder (docs/registry-file.md); without it there are no keys. Names ignore case. Any thread.

// NOLINTNEXTLINE(bugprone-reserved-identifier): published name
using HKEY = struct HKEY__*;
using REGSAM = DWORD;
using LSTATUS = LONG;

inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(UINT_PTR{0x80000001});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(UINT_PTR{0x80000002});

constexpr REGSAM KEY_READ = 0x20019;
constexpr DWORD REG_SZ = 1;    ///< a text of WCHAR with its terminator
constexpr DWORD REG_DWORD = 4; ///< a 32-bit integer

extern "C" {

/// Opens a key below one of the two above, or below an opened one, with its values as they are now. An empty
/// or null `subKey` is the key itself. ERROR_SUCCESS with a handle for `RegCloseKey`; ERROR_FILE_NOT_FOUND;
/// ERROR_ACCESS_DENIED for any access but `KEY_READ`; ERROR_INVALID_HANDLE; ERROR_INVALID_PARAMETER.
KESTO_EXPORT LSTATUS RegOpenKeyExW(HKEY key, const WCHAR* subKey, DWORD options, REGSAM access, HKEY* result);
/// `type`, `data` and `size` may be null, `size` not with `data`. `*size` holds the bytes at `data` and
/// receives those of the value. ERROR_SUCCESS; ERROR_FILE_NOT_FOUND; ERROR_MORE_DATA when `data` is too
/// small; ERROR_INVALID_HANDLE, also for a key that was not opened; ERROR_INVALID_PARAMETER.
KESTO_EXPORT LSTATUS RegQueryValueExW(HKEY key, const WCHAR* valueName, DWORD* reserved, DWORD* type,
                                      BYTE* data, DWORD* size);
KESTO_EXPORT LSTATUS RegCloseKey(HKEY key);

} // extern "C"
