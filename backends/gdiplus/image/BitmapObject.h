#pragma once

#include "gdiplus/image/BitmapLock.h"
#include "gdiplus/image/EncodedPicture.h"
#include "gdiplus/pixels/PixelBuffer.h"
#include "gdiplus/properties/PropertyItems.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// What stands behind a `GpBitmap`. A picture from a file stays encoded until its pixels are needed; what is
/// done to it before, turning and changing the format of a clone, is remembered. One thread at a time.
class BitmapObject : public Gdiplus::GpBitmap {
public:
    struct Traits {
        Gdiplus::PixelFormat format = 0;
        GUID rawFormat = Gdiplus::ImageFormatMemoryBMP;
        UINT flags = 0;
        float dpiX = 96;
        float dpiY = 96;
    };

    /// In memory of its own, all zero, with the usual palette of an indexed format.
    static Result<std::unique_ptr<BitmapObject>> create(int width, int height, Gdiplus::PixelFormat format);
    /// In the caller's memory, which must outlive the bitmap.
    static std::unique_ptr<BitmapObject> overMemory(const PixelView& memory);
    /// Reads the header of a file, see `EncodedPicture::open`.
    static Result<std::unique_ptr<BitmapObject>> open(const wchar_t* filename, ColorManagement management);
    /// As stored in the picture's own file.
    static std::unique_ptr<BitmapObject> over(std::shared_ptr<const EncodedPicture> picture);

    BitmapObject(const BitmapObject&) = delete;
    BitmapObject& operator=(const BitmapObject&) = delete;

    int width() const { return shownWidth; }
    int height() const { return shownHeight; }
    const Traits& traits() const { return facts; }

    const std::vector<Gdiplus::ARGB>& palette() const { return colors; }
    /// Takes as many entries as the indexed format can tell apart.
    Result<void> setPalette(std::span<const Gdiplus::ARGB> entries);

    /// The pixels, decoded now if they were not. The view holds until the bitmap is turned or destroyed. A
    /// picture that could not be decoded once gives the same error ever after.
    Result<PixelView> pixels();
    /// The outcome of decoding, which is done now unless the picture was drawn from already.
    Result<void> validate();

    /// Gives the bitmap memory of its own; a picture still encoded is turned when it is decoded or drawn.
    Result<void> turn(Gdiplus::RotateFlipType type);
    /// A copy that shares no memory and keeps resolution, flags and properties. The rectangle lies inside,
    /// and `canConvert` reaches the format.
    Result<std::unique_ptr<BitmapObject>> clone(const Gdiplus::Rect& area, Gdiplus::PixelFormat format);
    /// The whole picture at another size, `32bppPARGB` or `32bppRGB`; empty for one that is decoded already
    /// or should now be, since it is drawn from again or its format shows less than the file does.
    Result<std::optional<PixelBuffer>> drawEncoded(int targetWidth, int targetHeight, Kernel kernel);

    /// The rectangle that the caller has locked, if any. Where there is one, the bitmap is neither drawn nor
    /// turned.
    std::optional<BitmapLock>& lock() { return activeLock; }
    /// What the file says about the picture; nothing for a bitmap that comes from no file.
    const std::vector<PropertyEntry>& properties();

private:
    BitmapObject(int width, int height, const Traits& traits);
    BitmapObject(std::shared_ptr<const EncodedPicture> picture, Gdiplus::PixelFormat format,
                 Gdiplus::RotateFlipType turn);

    void adopt(PixelBuffer buffer);
    Result<void> decode();
    LoadError remember(LoadError error);
    bool showsAllOfEncoded() const;

    int shownWidth;
    int shownHeight;
    Traits facts;
    std::vector<Gdiplus::ARGB> colors;

    std::shared_ptr<const EncodedPicture> encoded;
    Gdiplus::RotateFlipType pendingTurn = Gdiplus::RotateNoneFlipNone; ///< not yet done to `encoded`
    bool drawnFromEncoded = false;
    std::optional<LoadError> loadError;

    PixelBuffer own;
    PixelView view; ///< into `own` or the caller's memory; without memory while only `encoded` is there
    std::optional<BitmapLock> activeLock;
    std::optional<std::vector<PropertyEntry>> propertyCache;
};

} // namespace GdiplusBackend
