#pragma once

#include <cstdint>
#include <cstring>

// Integer types keep their published widths: LONG and DWORD have 32 bits on every platform. WCHAR is the
// platform's wide character, UTF-32 here.
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using SHORT = std::int16_t;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using UINT16 = std::uint16_t;
using UINT32 = std::uint32_t;
using UINT64 = std::uint64_t;
// NOLINTNEXTLINE(bugprone-reserved-identifier): published name
using __int64 = std::int64_t;
using UINT_PTR = std::uintptr_t;
using ULONG_PTR = std::uintptr_t;
using BOOL = int;
using CHAR = char;
using WCHAR = wchar_t;
using VOID = void;
using PVOID = void*;
using LPVOID = void*;
using HRESULT = std::int32_t;

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];

    friend constexpr bool operator==(const GUID&, const GUID&) = default;
};
using CLSID = GUID;

// Handles of one kind do not convert into another kind.
// NOLINTBEGIN(bugprone-reserved-identifier): published names
using HANDLE = void*;
using HMODULE = struct HINSTANCE__*;
using HBITMAP = struct HBITMAP__*;
using HPALETTE = struct HPALETTE__*;
// NOLINTEND(bugprone-reserved-identifier)
using HGDIOBJ = void*;

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

/// A `RECT` that can be compared.
struct CRect : RECT {
    CRect()
        : RECT{} {}
    CRect(int l, int t, int r, int b)
        : RECT{l, t, r, b} {}

    friend bool operator==(const CRect& a, const CRect& b) {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }
};

/// What `GetObjectW` tells of a bitmap handle. `bmHeight` is positive also for top-down memory.
struct BITMAP {
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    LPVOID bmBits;
};
static_assert(sizeof(void*) != 8 || sizeof(BITMAP) == 32);

constexpr DWORD BI_RGB = 0;
constexpr DWORD BI_BITFIELDS = 3;

/// A positive `biHeight` means that the last row in memory is the picture's top row.
struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

struct RGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};

/// The header with its palette, or with its three masks for `BI_BITFIELDS`, following it in memory.
struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};
