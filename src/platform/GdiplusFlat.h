#pragma once

#include "platform/Export.h"
#include "platform/GdiplusTypes.h"
#include "platform/Stream.h"

#include <cstddef>

/// The flat functions, under their published names. None throws. A null object or out-pointer gives
/// `InvalidParameter`. An object is for one thread at a time; different objects are independent.
namespace Gdiplus::DllExports {

extern "C" {

/// Counts users; decoding and drawing work between the first start-up and the last shut-down, and objects
/// made before that give `GdiplusNotInitialized` from the functions that create them. Any thread.
KESTO_EXPORT GpStatus GdiplusStartup(ULONG_PTR* token, const GdiplusStartupInput* input,
                                     GdiplusStartupOutput* output);
KESTO_EXPORT VOID GdiplusShutdown(ULONG_PTR token);

/// Memory for the class objects of Gdiplus.h; null when there is none.
KESTO_EXPORT VOID* GdipAlloc(std::size_t size);
KESTO_EXPORT VOID GdipFree(VOID* memory);

/// A bitmap over `scan0`, in place, with `stride` bytes from a row to the next below it: a multiple of 4, of
/// either sign. The memory stays the caller's and must outlive the bitmap. With a null `scan0` the bitmap has
/// its own memory, all zero. `OutOfMemory` over the pixel budget.
KESTO_EXPORT GpStatus GdipCreateBitmapFromScan0(INT width, INT height, INT stride, PixelFormat format,
                                                BYTE* scan0, GpBitmap** bitmap);

/// A bitmap over a device-independent bitmap, in place: what is drawn into it lands in `bits`, which stays
/// the caller's and must outlive it. Rows are bottom-up for a positive height. 32 bits give `32bppRGB`.
KESTO_EXPORT GpStatus GdipCreateBitmapFromGdiDib(const BITMAPINFO* info, VOID* bits, GpBitmap** bitmap);

/// Reads the header of a picture file: size, pixel format, properties. Pixels are decoded when they are
/// first needed, so the file stays open until then. For the statuses see `Status`.
KESTO_EXPORT GpStatus GdipCreateBitmapFromFile(const WCHAR* filename, GpBitmap** bitmap);
/// As above, and colours go through the embedded colour profile into sRGB (IEC 61966-2-1).
KESTO_EXPORT GpStatus GdipCreateBitmapFromFileICM(const WCHAR* filename, GpBitmap** bitmap);
/// As from a file, out of the stream's bytes from its start on. They are copied: the stream stays the
/// caller's, with its place at the end, and may change afterwards. `GenericError` when it can't be read.
KESTO_EXPORT GpStatus GdipCreateBitmapFromStream(IStream* stream, GpBitmap** bitmap);
/// A copy of the handle's pixels as `32bppRGB`, or in the indexed format of the handle. `palette` may be
/// null.
KESTO_EXPORT GpStatus GdipCreateBitmapFromHBITMAP(HBITMAP handle, HPALETTE palette, GpBitmap** bitmap);

/// A new 32-bit bottom-up handle with premultiplied alpha, blended over `background` unless that is black or
/// has no alpha. The caller gives it back with `DeleteObject`.
KESTO_EXPORT GpStatus GdipCreateHBITMAPFromBitmap(GpBitmap* bitmap, HBITMAP* handle, ARGB background);

/// A copy of a rectangle, converted to `format`. `OutOfMemory` when the rectangle does not lie inside.
KESTO_EXPORT GpStatus GdipCloneBitmapAreaI(INT x, INT y, INT width, INT height, PixelFormat format,
                                           GpBitmap* source, GpBitmap** clone);

/// Opens the pixels of `rect` (null: all) to the caller. In the bitmap's own format this is the bitmap's
/// memory; in another one a converted copy, written back by the unlock if `flags` has `ImageLockModeWrite`.
/// `WrongState` when already locked; a picture that can't be decoded gives its load status.
KESTO_EXPORT GpStatus GdipBitmapLockBits(GpBitmap* bitmap, const GpRect* rect, UINT flags, PixelFormat format,
                                         BitmapData* lockedData);
KESTO_EXPORT GpStatus GdipBitmapUnlockBits(GpBitmap* bitmap, BitmapData* lockedData);

KESTO_EXPORT GpStatus GdipBitmapGetPixel(GpBitmap* bitmap, INT x, INT y, ARGB* color);
KESTO_EXPORT GpStatus GdipBitmapSetPixel(GpBitmap* bitmap, INT x, INT y, ARGB color);

KESTO_EXPORT GpStatus GdipDisposeImage(GpImage* image);
KESTO_EXPORT GpStatus GdipGetImageWidth(GpImage* image, UINT* width);
KESTO_EXPORT GpStatus GdipGetImageHeight(GpImage* image, UINT* height);
KESTO_EXPORT GpStatus GdipGetImageHorizontalResolution(GpImage* image, REAL* dotsPerInch);
KESTO_EXPORT GpStatus GdipGetImageVerticalResolution(GpImage* image, REAL* dotsPerInch);
KESTO_EXPORT GpStatus GdipGetImageFlags(GpImage* image, UINT* flags);
KESTO_EXPORT GpStatus GdipGetImageRawFormat(GpImage* image, GUID* format);
KESTO_EXPORT GpStatus GdipGetImagePixelFormat(GpImage* image, PixelFormat* format);
/// Decodes what is not decoded yet, and tells the load status; remembered for a picture already drawn from.
KESTO_EXPORT GpStatus GdipImageForceValidation(GpImage* image);

/// Bytes that `GdipGetImagePalette` fills, header included.
KESTO_EXPORT GpStatus GdipGetImagePaletteSize(GpImage* image, INT* size);
KESTO_EXPORT GpStatus GdipGetImagePalette(GpImage* image, ColorPalette* palette, INT size);
/// Of `palette` as many entries are taken as the pixel format can tell apart.
KESTO_EXPORT GpStatus GdipSetImagePalette(GpImage* image, const ColorPalette* palette);

/// Turns first, then mirrors, see `RotateFlipType`. The bitmap gets memory of its own.
KESTO_EXPORT GpStatus GdipImageRotateFlip(GpImage* image, RotateFlipType type);

/// Bytes that `GdipGetPropertyItem` fills, the item itself included. `PropertyNotFound` without such a tag.
KESTO_EXPORT GpStatus GdipGetPropertyItemSize(GpImage* image, PROPID id, UINT* size);
KESTO_EXPORT GpStatus GdipGetPropertyItem(GpImage* image, PROPID id, UINT size, PropertyItem* item);

KESTO_EXPORT GpStatus GdipGetImageEncodersSize(UINT* count, UINT* size);
KESTO_EXPORT GpStatus GdipGetImageEncoders(UINT count, UINT size, ImageCodecInfo* encoders);
/// Writes the whole picture or leaves what was at `filename` before. `parameters` may be null; of those only
/// `EncoderQuality` is known, for JPEG.
KESTO_EXPORT GpStatus GdipSaveImageToFile(GpImage* image, const WCHAR* filename, const CLSID* encoder,
                                          const EncoderParameters* parameters);

/// Drawing goes into `image`, which must outlive the graphics. `OutOfMemory` for an indexed or CMYK bitmap.
KESTO_EXPORT GpStatus GdipGetImageGraphicsContext(GpImage* image, GpGraphics** graphics);
KESTO_EXPORT GpStatus GdipDeleteGraphics(GpGraphics* graphics);
/// Modes 0 and 1 read back as 3, 2 as 7; any other than 0 to 7 is `InvalidParameter`.
KESTO_EXPORT GpStatus GdipSetInterpolationMode(GpGraphics* graphics, InterpolationMode mode);
KESTO_EXPORT GpStatus GdipGetInterpolationMode(GpGraphics* graphics, InterpolationMode* mode);
/// Replaces every pixel; `color` is not premultiplied.
KESTO_EXPORT GpStatus GdipGraphicsClear(GpGraphics* graphics, ARGB color);
KESTO_EXPORT GpStatus GdipFillRectangleI(GpGraphics* graphics, GpBrush* brush, INT x, INT y, INT width,
                                         INT height);

/// Source-over (Porter and Duff) of `image` at (x, y), scaled by the ratio of the two resolutions.
KESTO_EXPORT GpStatus GdipDrawImageI(GpGraphics* graphics, GpImage* image, INT x, INT y);
/// Source-over of a rectangle of `image` into a rectangle of the target, scaled. What lies outside either
/// picture is not drawn and does not change the scale. A negative width or height mirrors. `unit` must be
/// `UnitPixel`; `attributes` and `callback` must be null.
KESTO_EXPORT GpStatus GdipDrawImageRectRect(GpGraphics* graphics, GpImage* image, REAL dstX, REAL dstY,
                                            REAL dstWidth, REAL dstHeight, REAL srcX, REAL srcY,
                                            REAL srcWidth, REAL srcHeight, GpUnit unit,
                                            const GpImageAttributes* attributes, DrawImageAbort callback,
                                            VOID* callbackData);
KESTO_EXPORT GpStatus GdipDrawImageRectRectI(GpGraphics* graphics, GpImage* image, INT dstX, INT dstY,
                                             INT dstWidth, INT dstHeight, INT srcX, INT srcY, INT srcWidth,
                                             INT srcHeight, GpUnit unit, const GpImageAttributes* attributes,
                                             DrawImageAbort callback, VOID* callbackData);

KESTO_EXPORT GpStatus GdipCreateSolidFill(ARGB color, GpSolidFill** brush);
KESTO_EXPORT GpStatus GdipDeleteBrush(GpBrush* brush);

} // extern "C"

} // namespace Gdiplus::DllExports
