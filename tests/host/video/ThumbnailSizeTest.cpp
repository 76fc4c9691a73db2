#include "video/VideoFrames.h"

#include "GdiplusSession.h"

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

using KestoHost::Bounds;
using KestoRenderLib::MetaBitmap;
using KestoRenderLib::Size;

Size sizeOfThumbnail(const Size& picture, const Bounds& bounds) {
    const auto frame = MetaBitmap::Create(picture, KestoRenderLib::PixelFormat::Premultiplied32);
    const std::unique_ptr<Gdiplus::Bitmap> thumbnail(
        KestoThumbnailer::GdiplusBitmapThumbnailingHelper::ScaleToGetThumbnail(frame, bounds.width,
                                                                               bounds.height));
    return thumbnail ? Size{static_cast<int>(thumbnail->GetWidth()), static_cast<int>(thumbnail->GetHeight())}
                     : Size{};
}

TEST(ThumbnailSize, IsThatOfTheLibrarysThumbnail) {
    const KestoHost::GdiplusSession session;
    for (const Size picture : {Size{192, 108}, {107, 61}, {61, 107}, {90, 90}, {301, 3}, {3, 301}, {1, 1}})
        for (const Bounds bounds : {Bounds{0, 0},
                                    {0, 46},
                                    {46, 0},
                                    {1, 0},
                                    {0, 1},
                                    {16, 16},
                                    {160, 9},
                                    {9, 160},
                                    {33, 47},
                                    {47, 33},
                                    {500, 500},
                                    {0, 500},
                                    {500, 50}})
            EXPECT_EQ(KestoHost::thumbnailSizeOf(picture, bounds), sizeOfThumbnail(picture, bounds))
                << picture.width << "x" << picture.height << " in " << bounds.width << "x" << bounds.height;
}

} // namespace
