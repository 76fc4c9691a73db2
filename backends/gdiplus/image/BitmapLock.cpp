#include "gdiplus/image/BitmapLock.h"

#include "gdiplus/pixels/ConvertPixels.h"

namespace GdiplusBackend {

namespace {

bool startsAtAByte(int x, Gdiplus::PixelFormat format) {
    return static_cast<UINT>(x) * GetPixelFormatSize(format) % 8 == 0;
}

} // namespace

Result<BitmapLock> BitmapLock::open(const PixelView& bitmap, const Gdiplus::Rect& area, UINT mode,
                                    Gdiplus::PixelFormat format) {
    const bool writes = (mode & Gdiplus::ImageLockModeWrite) != 0;
    if (!canConvert(bitmap.format, format) || (writes && !canConvert(format, bitmap.format)))
        return tl::unexpected(
            LoadError{Gdiplus::InvalidParameter, "the bitmap can't be locked in this format"});
    BitmapLock lock;
    lock.area = area;
    lock.mode = mode;
    if (format == bitmap.format && startsAtAByte(area.X, format)) {
        lock.shown = cutOut(bitmap, area);
        return lock;
    }
    auto copy =
        PixelBuffer::create(area.Width, area.Height, format, {bitmap.palette.begin(), bitmap.palette.end()});
    if (!copy)
        return tl::unexpected(std::move(copy).error());
    lock.copy = std::move(*copy);
    lock.shown = lock.copy.view();
    convertPixels(bitmap, area.X, area.Y, lock.shown);
    return lock;
}

void BitmapLock::close(const PixelView& bitmap) {
    if (!copy || (mode & Gdiplus::ImageLockModeWrite) == 0)
        return;
    if (startsAtAByte(area.X, bitmap.format)) {
        convertPixels(shown, 0, 0, cutOut(bitmap, area));
        return;
    }
    for (int y = 0; y < area.Height; ++y)
        for (int x = 0; x < area.Width; ++x)
            writeIndex(bitmap, area.X + x, area.Y + y, readIndex(shown, x, y));
}

} // namespace GdiplusBackend
