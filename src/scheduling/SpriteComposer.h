#pragma once

#include "platform/Gdiplus.h"
#include "platform/Threading.h"
#include "scheduling/ISpriteComposer.h"

#include <memory>
#include <string>

namespace KestoThumbnailer {

class IThumbnailLoaderGdiplusBitmapCallback;

/// How a sprite sheet is laid out. Any other value is taken: such a sheet has no bitmap and no tiles.
enum SpriteStyle : int {
    SpriteStyleRows = 0, ///< left to right, with rows of at most 4000 pixels
    SpriteStyleGrid = 1, ///< a square of `SpriteComposer::GetSpriteSheetColumns` columns
};

/// Draws thumbnails of one size into one large bitmap. The sheet is allocated when the composer is made, and
/// stays with it; without memory for it every draw is in vain. Any thread; the process must have started
/// GDI+.
class KESTO_EXPORT SpriteComposer final : public ISpriteComposer {
public:
    /// For `count` tiles of `width` by `height` pixels. `callback` receives copies of the sheet; it may be
    /// null and must outlive this object. `filePath` (UTF-8) is where the sheet is saved, in the format that
    /// its extension tells; empty: in no file.
    SpriteComposer(int width, int height, int count, IThumbnailLoaderGdiplusBitmapCallback* callback,
                   const std::string& filePath, SpriteStyle style);
    ~SpriteComposer() override;
    SpriteComposer(const SpriteComposer&) = delete;
    SpriteComposer& operator=(const SpriteComposer&) = delete;

    void AddBitmap(Gdiplus::Bitmap& bitmap) override KESTO_EXCLUDES(lock);
    void MoveThumbnailFile(const std::string& targetPath) override KESTO_EXCLUDES(lock);
    KestoRenderLib::Size GetImageSize() const override { return {imageWidth, imageHeight}; }
    CRect RectForImage(int index) const override;

    /// Hands a copy of the sheet, as it is, to the callback with a default job, and saves the sheet; each
    /// time that it is called. The copy is null where there is no sheet. The callback runs under the lock: it
    /// may call this object, but not wait for another thread that does. A failed save is not reported.
    void DoneAddingBitmaps() KESTO_EXCLUDES(lock);

    /// How many tiles the sheet is for.
    int GetNumberOfThumbnails() const { return thumbnailCount; }
    /// Whether exactly that many have been added.
    bool AllThumbnailsArrived() const KESTO_EXCLUDES(lock);

    /// Of a grid for `count` tiles: always one more than the whole part of the square root.
    static int GetSpriteSheetColumns(int count);

    /// Where tile `index` lies on a sheet for `count` tiles of `width` by `height` pixels. All 0 for an
    /// unknown style, and for rows of tiles 4000 pixels wide, which have no place.
    static CRect RectForImage(int index, int count, int width, int height, SpriteStyle style);

private:
    std::unique_ptr<Gdiplus::Bitmap> MakeSheet() const;
    std::unique_ptr<Gdiplus::Bitmap> CopySheetLocked() const KESTO_REQUIRES(lock);
    void DeliverCopyLocked() KESTO_REQUIRES(lock);

    const std::string filePath;
    const int imageWidth;
    const int imageHeight;
    const int thumbnailCount;
    std::unique_ptr<Gdiplus::Bitmap> sheet KESTO_GUARDED_BY(lock);
    int arrivedCount KESTO_GUARDED_BY(lock) = 0; // also the index of the next tile
    IThumbnailLoaderGdiplusBitmapCallback* const callback;
    mutable RecursiveMutex lock{
        LockRanks::spriteComposer}; // held while the callback runs, which may come back
    const int columns;
    const SpriteStyle style;
};

} // namespace KestoThumbnailer
