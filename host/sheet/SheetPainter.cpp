#include "sheet/SheetPainter.h"

#include <KestoThumbnailer/IThumbnailLoaderGdiplusBitmapCallback.h>

#include <stdexcept>
#include <utility>

namespace KestoHost {

namespace {

using KestoThumbnailer::SpriteComposer;

class SheetTaker final : public KestoThumbnailer::IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                        const KestoThumbnailer::ThumbnailLoaderJob&) override {
        taken.reset(std::exchange(*bitmap, nullptr));
    }

    std::unique_ptr<Gdiplus::Bitmap> taken;
};

boost::shared_ptr<KestoRenderLib::MetaBitmap> tryFrame(const FrameAt& frameAt, ModelTime time) {
    try {
        return frameAt(time);
    } catch (const std::runtime_error&) {
        return {}; // the other tiles may still be shown; this one is counted and reported as a hole
    }
}

/// Tiles have their places by order of arrival, so that one without a picture must arrive, too.
void addHole(SpriteComposer& composer) {
    Gdiplus::Bitmap nothing(1, 1, PixelFormat32bppPARGB);
    composer.AddBitmap(nothing);
}

} // namespace

PaintedSheet paintSheet(const FrameAt& frameAt, const std::vector<ModelTime>& times,
                        const SheetLayout& layout) {
    PaintedSheet sheet;
    SheetTaker taker;
    SpriteComposer composer(layout.tile.width, layout.tile.height, layout.composerCount, &taker, {},
                            layout.style);
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (const auto frame = tryFrame(frameAt, times[i])) {
            composer.AddBitmap(*frame->AsGdiplusBitmap());
        } else {
            addHole(composer);
            sheet.holes.push_back(static_cast<int>(i));
        }
    }
    composer.DoneAddingBitmaps();
    sheet.bitmap = std::move(taker.taken);
    return sheet;
}

} // namespace KestoHost
