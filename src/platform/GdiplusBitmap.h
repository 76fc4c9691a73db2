#pragma once

#include "platform/Gdi.h"
#include "platform/GdiplusBase.h"

namespace Gdiplus {

class Image : public GdiplusBase {
public:
    virtual ~Image() { DllExports::GdipDisposeImage(nativeImage); }

    UINT GetWidth() const { return Ask(DllExports::GdipGetImageWidth); }
    UINT GetHeight() const { return Ask(DllExports::GdipGetImageHeight); }
    REAL GetHorizontalResolution() const { return Ask(DllExports::GdipGetImageHorizontalResolution); }
    REAL GetVerticalResolution() const { return Ask(DllExports::GdipGetImageVerticalResolution); }
    UINT GetFlags() const { return Ask(DllExports::GdipGetImageFlags); }
    PixelFormat GetPixelFormat() const { return Ask(DllExports::GdipGetImagePixelFormat); }
    Status GetRawFormat(GUID* format) const {
        return SetStatus(DllExports::GdipGetImageRawFormat(nativeImage, format));
    }

    INT GetPaletteSize() { return Ask(DllExports::GdipGetImagePaletteSize); }
    Status GetPalette(ColorPalette* palette, INT size) {
        return SetStatus(DllExports::GdipGetImagePalette(nativeImage, palette, size));
    }
    Status SetPalette(const ColorPalette* palette) {
        return SetStatus(DllExports::GdipSetImagePalette(nativeImage, palette));
    }

    Status RotateFlip(RotateFlipType type) {
        return SetStatus(DllExports::GdipImageRotateFlip(nativeImage, type));
    }

    /// 0 without such a tag.
    UINT GetPropertyItemSize(PROPID id) {
        UINT size = 0;
        SetStatus(DllExports::GdipGetPropertyItemSize(nativeImage, id, &size));
        return size;
    }
    Status GetPropertyItem(PROPID id, UINT size, PropertyItem* item) {
        return SetStatus(DllExports::GdipGetPropertyItem(nativeImage, id, size, item));
    }

    Status Save(const WCHAR* filename, const CLSID* encoder, const EncoderParameters* parameters = nullptr) {
        return SetStatus(DllExports::GdipSaveImageToFile(nativeImage, filename, encoder, parameters));
    }

    /// Decodes what is not decoded yet, and tells whether that worked.
    Status ForceValidation() { return SetStatus(DllExports::GdipImageForceValidation(nativeImage)); }

protected:
    friend class Graphics;
    Image() = default;

    template <typename T>
    T Ask(GpStatus (*query)(GpImage*, T*)) const {
        T answer{};
        SetStatus(query(nativeImage, &answer));
        return answer;
    }

    GpImage* nativeImage = nullptr;
};

/// A constructor that fails leaves its status behind as the last status, and an object of no size.
class Bitmap : public Image {
public:
    explicit Bitmap(const WCHAR* filename, BOOL useEmbeddedColorManagement = FALSE) {
        Adopt(useEmbeddedColorManagement ? DllExports::GdipCreateBitmapFromFileICM
                                         : DllExports::GdipCreateBitmapFromFile,
              filename);
    }
    explicit Bitmap(IStream* stream) { Adopt(DllExports::GdipCreateBitmapFromStream, stream); }
    Bitmap(INT width, INT height, PixelFormat format = PixelFormat32bppARGB)
        : Bitmap(width, height, 0, format, nullptr) {}
    Bitmap(INT width, INT height, INT stride, PixelFormat format, BYTE* scan0) {
        Adopt(DllExports::GdipCreateBitmapFromScan0, width, height, stride, format, scan0);
    }
    Bitmap(const BITMAPINFO* info, VOID* bits) { Adopt(DllExports::GdipCreateBitmapFromGdiDib, info, bits); }
    Bitmap(HBITMAP handle, HPALETTE palette) {
        Adopt(DllExports::GdipCreateBitmapFromHBITMAP, handle, palette);
    }

    static Bitmap* FromFile(const WCHAR* filename, BOOL useEmbeddedColorManagement = FALSE) {
        return new Bitmap(filename, useEmbeddedColorManagement);
    }

    /// The caller owns the clone; null on failure, with the reason in this bitmap's last status.
    Bitmap* Clone(INT x, INT y, INT width, INT height, PixelFormat format) {
        GpBitmap* native = nullptr;
        if (SetStatus(DllExports::GdipCloneBitmapAreaI(x, y, width, height, format, Native(), &native)) != Ok)
            return nullptr;
        auto* clone = new Bitmap(native);
        if (!clone)
            DllExports::GdipDisposeImage(native);
        return clone;
    }

    Status LockBits(const Rect* rect, UINT flags, PixelFormat format, BitmapData* lockedData) {
        return SetStatus(DllExports::GdipBitmapLockBits(Native(), rect, flags, format, lockedData));
    }
    Status UnlockBits(BitmapData* lockedData) {
        return SetStatus(DllExports::GdipBitmapUnlockBits(Native(), lockedData));
    }
    Status GetPixel(INT x, INT y, Color* color) {
        ARGB argb = 0;
        const Status status = SetStatus(DllExports::GdipBitmapGetPixel(Native(), x, y, &argb));
        if (status == Ok)
            *color = Color(argb);
        return status;
    }
    Status SetPixel(INT x, INT y, const Color& color) {
        return SetStatus(DllExports::GdipBitmapSetPixel(Native(), x, y, color.GetValue()));
    }
    /// The caller gives `*handle` back with `DeleteObject`.
    Status GetHBITMAP(const Color& background, HBITMAP* handle) {
        return SetStatus(DllExports::GdipCreateHBITMAPFromBitmap(Native(), handle, background.GetValue()));
    }

protected:
    explicit Bitmap(GpBitmap* native) { nativeImage = native; }

    template <typename... Parameters, typename... Arguments>
    void Adopt(GpStatus (*create)(Parameters...), Arguments... arguments) {
        GpBitmap* native = nullptr;
        SetStatus(create(arguments..., &native));
        nativeImage = native;
    }

    GpBitmap* Native() const { return static_cast<GpBitmap*>(nativeImage); }
};

} // namespace Gdiplus
