#include "scheduling/SpriteComposer.h"

#include "scheduling/IThumbnailLoaderGdiplusBitmapCallback.h"
#include "scheduling/ThumbnailLoaderJob.h"
#include "scheduling/imagefile/ImageHelper.h"
#include "scheduling/imagefile/TextConversion.h"

#include "platform/System.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace KestoThumbnailer {

namespace {

constexpr int maxRowWidth = 4000;

/// Sizes far beyond any sheet wrap, as 32-bit arithmetic does; no bitmap is made of them.
int Wrapped(std::int64_t value) {
    return static_cast<int>(value);
}

int Product(int a, int b) {
    return Wrapped(std::int64_t{a} * b);
}

CRect TileAt(int left, int top, int width, int height) {
    return {left, top, Wrapped(std::int64_t{left} + width), Wrapped(std::int64_t{top} + height)};
}

KestoRenderLib::Size SizeOfRows(int count, int width, int height) {
    const int total = Product(count, width);
    if (total <= maxRowWidth)
        return {total, height};
    return {maxRowWidth - maxRowWidth % width, Product(height, total / maxRowWidth + 1)};
}

// Deliberate: rows wrap one tile before the limit, not at the sheet's width, so the last tiles of a sheet may
// lie below it and are clipped; tiles are located through RectForImage alone.
CRect TileInRows(int index, int width, int height) {
    const std::int64_t position = Product(index, width);
    const std::int64_t span = std::int64_t{maxRowWidth} - width;
    if (span == 0)
        return {};
    return TileAt(Wrapped(position % span), Product(Wrapped(position / span), height), width, height);
}

CRect TileInGrid(int index, int columns, int width, int height) {
    return TileAt(Product(index % columns, width), Product(index / columns, height), width, height);
}

/// Null when there is no memory for the bitmap or its pixels.
std::unique_ptr<Gdiplus::Bitmap> MakeBitmap(int width, int height, PixelFormat format) {
    std::unique_ptr<Gdiplus::Bitmap> bitmap(new Gdiplus::Bitmap(width, height, format));
    if (bitmap && bitmap->GetLastStatus() != Gdiplus::Ok)
        bitmap.reset();
    return bitmap;
}

Gdiplus::RectF ToRectF(const CRect& rect) {
    return {static_cast<Gdiplus::REAL>(rect.left), static_cast<Gdiplus::REAL>(rect.top),
            static_cast<Gdiplus::REAL>(std::int64_t{rect.right} - rect.left),
            static_cast<Gdiplus::REAL>(std::int64_t{rect.bottom} - rect.top)};
}

} // namespace

SpriteComposer::SpriteComposer(int width, int height, int count,
                               IThumbnailLoaderGdiplusBitmapCallback* receiver, const std::string& savePath,
                               SpriteStyle layout)
    : filePath(savePath)
    , imageWidth(width)
    , imageHeight(height)
    , thumbnailCount(count)
    , callback(receiver)
    , columns(GetSpriteSheetColumns(count))
    , style(layout) {
    const RecursiveMutexLock held(lock);
    sheet = MakeSheet();
}

SpriteComposer::~SpriteComposer() {
    const RecursiveMutexLock held(lock);
    sheet.reset();
}

void SpriteComposer::AddBitmap(Gdiplus::Bitmap& bitmap) {
    const RecursiveMutexLock held(lock);
    Gdiplus::Graphics graphics(sheet.get());
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQuality);
    const int index = arrivedCount++;
    graphics.DrawImage(&bitmap, ToRectF(RectForImage(index)), 0, 0,
                       static_cast<Gdiplus::REAL>(bitmap.GetWidth()),
                       static_cast<Gdiplus::REAL>(bitmap.GetHeight()), Gdiplus::UnitPixel);
}

void SpriteComposer::MoveThumbnailFile(const std::string& targetPath) {
    DoneAddingBitmaps();
    (void)MoveFileExW(WideFromUtf8(filePath).c_str(), WideFromUtf8(targetPath).c_str(),
                      MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED); // not reported
}

CRect SpriteComposer::RectForImage(int index) const {
    return RectForImage(index, thumbnailCount, imageWidth, imageHeight, style);
}

void SpriteComposer::DoneAddingBitmaps() {
    const RecursiveMutexLock held(lock);
    DeliverCopyLocked();
    if (!filePath.empty())
        (void)ImageHelper::QuickSavePic(sheet.get(), filePath); // not reported
}

bool SpriteComposer::AllThumbnailsArrived() const {
    const RecursiveMutexLock held(lock);
    return arrivedCount == thumbnailCount;
}

// Deliberate: also a perfect square gets one column more than its root.
int SpriteComposer::GetSpriteSheetColumns(int count) {
    return static_cast<int>(std::sqrt(std::max(count, 0))) + 1;
}

CRect SpriteComposer::RectForImage(int index, int count, int width, int height, SpriteStyle style) {
    switch (style) {
    case SpriteStyleRows:
        return TileInRows(index, width, height);
    case SpriteStyleGrid:
        return TileInGrid(index, GetSpriteSheetColumns(count), width, height);
    }
    return {};
}

std::unique_ptr<Gdiplus::Bitmap> SpriteComposer::MakeSheet() const {
    switch (style) {
    case SpriteStyleRows: {
        const KestoRenderLib::Size size = SizeOfRows(thumbnailCount, imageWidth, imageHeight);
        return MakeBitmap(size.width, size.height, PixelFormat32bppARGB);
    }
    case SpriteStyleGrid:
        return MakeBitmap(Product(imageWidth, columns), Product(imageHeight, columns), PixelFormat32bppPARGB);
    }
    return nullptr;
}

std::unique_ptr<Gdiplus::Bitmap> SpriteComposer::CopySheetLocked() const {
    if (!sheet)
        return nullptr;
    const int width = static_cast<int>(sheet->GetWidth());
    const int height = static_cast<int>(sheet->GetHeight());
    auto copy = MakeBitmap(width, height, sheet->GetPixelFormat());
    if (copy)
        Gdiplus::Graphics(copy.get())
            .DrawImage(sheet.get(), Gdiplus::Rect(0, 0, width, height), 0, 0, width, height,
                       Gdiplus::UnitPixel);
    return copy;
}

void SpriteComposer::DeliverCopyLocked() {
    if (!callback)
        return;
    Gdiplus::Bitmap* copy = CopySheetLocked().release();
    const CallbackUnderLocks callersCode;
    callback->OnLoadedGdiPlusBitmapThumbnail(&copy, ThumbnailLoaderJob());
    const std::unique_ptr<Gdiplus::Bitmap> leftBehind(copy);
}

} // namespace KestoThumbnailer
