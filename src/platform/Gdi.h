#pragma once

#include "platform/Export.h"
#include "platform/WinTypes.h"

// The bitmap handles of the older drawing interface. Any thread; one thread at a time for one handle.

constexpr UINT DIB_RGB_COLORS = 0;

extern "C" {

/// A bitmap handle with memory of its own, all zero, and `*bits` pointing at it. A positive height gives
/// bottom-up rows of a multiple of 4 bytes. `device`, `section` and `offset` must be null. Null on failure.
KESTO_EXPORT HBITMAP CreateDIBSection(HANDLE device, const BITMAPINFO* info, UINT usage, VOID** bits,
                                      HANDLE section, DWORD offset);

/// Fills a `BITMAP` for a bitmap handle and gives the bytes written: 0 on failure.
KESTO_EXPORT int GetObjectW(HGDIOBJ object, int size, LPVOID out);

/// False for a handle that is not, or no longer, one of ours.
KESTO_EXPORT BOOL DeleteObject(HGDIOBJ object);

} // extern "C"
