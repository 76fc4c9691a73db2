#pragma once

#include "platform/WinTypes.h"

using PixelFormat = INT;

// A pixel format's value: flags, bits a pixel in the second byte, an index in the lowest.
constexpr PixelFormat PixelFormatIndexed = 0x00010000;
constexpr PixelFormat PixelFormatGDI = 0x00020000;
constexpr PixelFormat PixelFormatAlpha = 0x00040000;
constexpr PixelFormat PixelFormatPAlpha = 0x00080000;
constexpr PixelFormat PixelFormatCanonical = 0x00200000;

constexpr PixelFormat PixelFormatUndefined = 0;
constexpr PixelFormat PixelFormat1bppIndexed = 0x00030101;
constexpr PixelFormat PixelFormat4bppIndexed = 0x00030402;
constexpr PixelFormat PixelFormat8bppIndexed = 0x00030803;
constexpr PixelFormat PixelFormat16bppRGB555 = 0x00021005;
constexpr PixelFormat PixelFormat16bppRGB565 = 0x00021006;
constexpr PixelFormat PixelFormat24bppRGB = 0x00021808;
constexpr PixelFormat PixelFormat32bppRGB = 0x00022009;
constexpr PixelFormat PixelFormat32bppARGB = 0x0026200A;
constexpr PixelFormat PixelFormat32bppPARGB = 0x000E200B;
constexpr PixelFormat PixelFormat32bppCMYK = 0x0000200F;

constexpr bool IsIndexedPixelFormat(PixelFormat format) {
    return (format & PixelFormatIndexed) != 0;
}

constexpr bool IsAlphaPixelFormat(PixelFormat format) {
    return (format & PixelFormatAlpha) != 0;
}

constexpr UINT GetPixelFormatSize(PixelFormat format) {
    return (static_cast<UINT>(format) >> 8) & 0xFFU;
}

// Kinds of property values.
using PROPID = ULONG;
constexpr PROPID PropertyTagOrientation = 0x0112;
constexpr WORD PropertyTagTypeByte = 1;
constexpr WORD PropertyTagTypeASCII = 2;
constexpr WORD PropertyTagTypeShort = 3;
constexpr WORD PropertyTagTypeLong = 4;
constexpr WORD PropertyTagTypeRational = 5;
constexpr WORD PropertyTagTypeUndefined = 7;
constexpr WORD PropertyTagTypeSLONG = 9;
constexpr WORD PropertyTagTypeSRational = 10;

namespace Gdiplus {

using ::PixelFormat;
using REAL = float;
using ARGB = DWORD;

/// When a picture is loaded, the statuses mean: `InvalidParameter` the file is missing or its name is empty,
/// `AccessDenied` it can't be opened or is no regular file, `UnknownImageFormat` no decoder knows it,
/// `OutOfMemory` it is over the pixel budget or memory ran out, `Aborted` the file ends before the picture
/// does, `GenericError` it is damaged.
enum Status : INT {
    Ok = 0,
    GenericError = 1,
    InvalidParameter = 2,
    OutOfMemory = 3,
    ObjectBusy = 4,
    InsufficientBuffer = 5,
    NotImplemented = 6,
    Win32Error = 7,
    WrongState = 8,
    Aborted = 9,
    FileNotFound = 10,
    ValueOverflow = 11,
    AccessDenied = 12,
    UnknownImageFormat = 13,
    FontFamilyNotFound = 14,
    FontStyleNotFound = 15,
    NotTrueTypeFont = 16,
    UnsupportedGdiplusVersion = 17,
    GdiplusNotInitialized = 18,
    PropertyNotFound = 19,
    PropertyNotSupported = 20,
    ProfileNotFound = 21,
};
using GpStatus = Status;

enum Unit : INT {
    UnitWorld = 0,
    UnitDisplay = 1,
    UnitPixel = 2,
    UnitPoint = 3,
    UnitInch = 4,
    UnitDocument = 5,
    UnitMillimeter = 6,
};
using GpUnit = Unit;

/// How drawing samples a picture. Modes 0, 1, 3 and 6 are linear, 2, 4 and 7 cubic, 5 takes the nearest
/// pixel. All but 5 average over the area that a target pixel covers when they shrink; samples are taken
/// around pixel centres, and beyond the border the edge pixel repeats, so no border fades and no pattern
/// aliases.
enum InterpolationMode : INT {
    InterpolationModeInvalid = -1,
    InterpolationModeDefault = 0,
    InterpolationModeLowQuality = 1,
    InterpolationModeHighQuality = 2,
    InterpolationModeBilinear = 3,
    InterpolationModeBicubic = 4,
    InterpolationModeNearestNeighbor = 5,
    InterpolationModeHighQualityBilinear = 6,
    InterpolationModeHighQualityBicubic = 7,
};

enum ImageLockMode : UINT {
    ImageLockModeRead = 1,
    ImageLockModeWrite = 2,
    ImageLockModeUserInputBuf = 4,
};

enum ImageFlags : UINT {
    ImageFlagsNone = 0,
    ImageFlagsHasAlpha = 0x2,
    ImageFlagsColorSpaceRGB = 0x10,
    ImageFlagsColorSpaceCMYK = 0x20,
    ImageFlagsColorSpaceGRAY = 0x40,
    ImageFlagsColorSpaceYCCK = 0x100,
    ImageFlagsHasRealDPI = 0x1000,
    ImageFlagsHasRealPixelSize = 0x2000,
    ImageFlagsReadOnly = 0x10000,
};

/// The low two bits are the number of quarter turns clockwise, made first; bit 4 then mirrors left to right.
enum RotateFlipType : INT {
    RotateNoneFlipNone = 0,
    Rotate90FlipNone = 1,
    Rotate180FlipNone = 2,
    Rotate270FlipNone = 3,
    RotateNoneFlipX = 4,
    Rotate90FlipX = 5,
    Rotate180FlipX = 6,
    Rotate270FlipX = 7,

    RotateNoneFlipY = Rotate180FlipX,
    Rotate90FlipY = Rotate270FlipX,
    Rotate180FlipY = RotateNoneFlipX,
    Rotate270FlipY = Rotate90FlipX,
    RotateNoneFlipXY = Rotate180FlipNone,
    Rotate90FlipXY = Rotate270FlipNone,
    Rotate180FlipXY = RotateNoneFlipNone,
    Rotate270FlipXY = Rotate90FlipNone,
};

class Rect {
public:
    Rect() = default;
    Rect(INT x, INT y, INT width, INT height)
        : X(x)
        , Y(y)
        , Width(width)
        , Height(height) {}

    INT X = 0;
    INT Y = 0;
    INT Width = 0;
    INT Height = 0;
};
using GpRect = Rect;

class RectF {
public:
    RectF() = default;
    RectF(REAL x, REAL y, REAL width, REAL height)
        : X(x)
        , Y(y)
        , Width(width)
        , Height(height) {}

    REAL X = 0;
    REAL Y = 0;
    REAL Width = 0;
    REAL Height = 0;
};

/// Not premultiplied; `GetValue` is 0xAARRGGBB.
class Color {
public:
    Color() = default;
    explicit Color(ARGB argb)
        : Argb(argb) {}
    Color(BYTE r, BYTE g, BYTE b)
        : Color(255, r, g, b) {}
    Color(BYTE a, BYTE r, BYTE g, BYTE b)
        : Argb(MakeARGB(a, r, g, b)) {}

    BYTE GetAlpha() const { return static_cast<BYTE>(Argb >> 24); }
    BYTE GetRed() const { return static_cast<BYTE>(Argb >> 16); }
    BYTE GetGreen() const { return static_cast<BYTE>(Argb >> 8); }
    BYTE GetBlue() const { return static_cast<BYTE>(Argb); }
    ARGB GetValue() const { return Argb; }

    static constexpr ARGB MakeARGB(BYTE a, BYTE r, BYTE g, BYTE b) {
        return static_cast<ARGB>(a) << 24 | static_cast<ARGB>(r) << 16 | static_cast<ARGB>(g) << 8 | b;
    }

private:
    ARGB Argb = 0xFF000000;
};

/// A locked rectangle. `Stride` is negative where rows lie bottom-up; `Scan0` is always the top picture row.
class BitmapData {
public:
    UINT Width = 0;
    UINT Height = 0;
    INT Stride = 0;
    ::PixelFormat PixelFormat = 0;
    VOID* Scan0 = nullptr;
    UINT_PTR Reserved = 0;
};

/// `Entries` has `Count` colours; the one declared here only starts them.
struct ColorPalette {
    UINT Flags;
    UINT Count;
    ARGB Entries[1];
};

/// `length` bytes at `value`, in the machine's byte order; `value` points behind the item itself.
struct PropertyItem {
    PROPID id;
    ULONG length;
    WORD type;
    VOID* value;
};

struct ImageCodecInfo {
    CLSID Clsid;
    GUID FormatID;
    const WCHAR* CodecName;
    const WCHAR* DllName;
    const WCHAR* FormatDescription;
    const WCHAR* FilenameExtension;
    const WCHAR* MimeType;
    DWORD Flags;
    DWORD Version;
    DWORD SigCount;
    DWORD SigSize;
    const BYTE* SigPattern;
    const BYTE* SigMask;
};

struct EncoderParameter {
    GUID Guid;
    ULONG NumberOfValues;
    ULONG Type;
    VOID* Value;
};

struct EncoderParameters {
    UINT Count;
    EncoderParameter Parameter[1];
};

constexpr ULONG EncoderParameterValueTypeLong = 4;
/// One `EncoderParameterValueTypeLong` from 0 to 100.
inline constexpr GUID EncoderQuality = {
    0x1d5be4b5, 0xfa4a, 0x452d, {0x9c, 0xdd, 0x5d, 0xb3, 0x51, 0x05, 0xe7, 0xeb}};

inline constexpr GUID ImageFormatUndefined = {
    0xb96b3ca9, 0x0728, 0x11d3, {0x9d, 0x7b, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
inline constexpr GUID ImageFormatMemoryBMP = {
    0xb96b3caa, 0x0728, 0x11d3, {0x9d, 0x7b, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
inline constexpr GUID ImageFormatBMP = {
    0xb96b3cab, 0x0728, 0x11d3, {0x9d, 0x7b, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
inline constexpr GUID ImageFormatJPEG = {
    0xb96b3cae, 0x0728, 0x11d3, {0x9d, 0x7b, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
inline constexpr GUID ImageFormatPNG = {
    0xb96b3caf, 0x0728, 0x11d3, {0x9d, 0x7b, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
inline constexpr GUID ImageFormatGIF = {
    0xb96b3cb0, 0x0728, 0x11d3, {0x9d, 0x7b, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
inline constexpr GUID ImageFormatTIFF = {
    0xb96b3cb1, 0x0728, 0x11d3, {0x9d, 0x7b, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

/// `GdiplusVersion` is 1; the rest is not looked at.
struct GdiplusStartupInput {
    UINT32 GdiplusVersion = 1;
    VOID* DebugEventCallback = nullptr;
    BOOL SuppressBackgroundThread = FALSE;
    BOOL SuppressExternalCodecs = FALSE;
};

struct GdiplusStartupOutput {
    VOID* NotificationHook;
    VOID* NotificationUnhook;
};

// What the flat functions hand out; behind them stand larger objects.
class GpImage {};
class GpBitmap : public GpImage {};
class GpGraphics {};
class GpBrush {};
class GpSolidFill : public GpBrush {};
class GpImageAttributes;
using DrawImageAbort = BOOL (*)(VOID*);

} // namespace Gdiplus
