#include "sheet/SheetPainter.h"

#include "GdiplusSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>

using namespace KestoHost;
using KestoRenderLib::MetaBitmap;
using KestoThumbnailer::SpriteStyleRows;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::uint32_t transparent = 0;

boost::shared_ptr<MetaBitmap> gray(int level) {
    auto frame = MetaBitmap::Create({32, 16}, KestoRenderLib::PixelFormat::Premultiplied32);
    std::fill_n(frame->GetPixels(), 32 * 16 * 4, static_cast<unsigned char>(level));
    for (int i = 0; i < 32 * 16; ++i)
        frame->GetPixels()[i * 4 + 3] = 255;
    return frame;
}

std::uint32_t grayPixel(int level) {
    return 0xFF000000U | static_cast<std::uint32_t>(level) * 0x010101U;
}

std::uint32_t pixelAt(Gdiplus::Bitmap& bitmap, int x, int y) {
    Gdiplus::Color color;
    bitmap.GetPixel(x, y, &color);
    return color.GetValue();
}

class SheetPainter : public testing::Test {
protected:
    GdiplusSession session;
    SheetLayout layout = layOut(SpriteStyleRows, {16, 8}, 3);
};

} // namespace

TEST_F(SheetPainter, DrawsTheFrameOfEachTimeIntoItsTile) {
    const FrameAt frameAt = [](ModelTime time) { return gray(static_cast<int>(time)); };
    const PaintedSheet sheet = paintSheet(frameAt, {10, 20, 30}, layout);
    ASSERT_TRUE(sheet.bitmap);
    EXPECT_EQ(pixelAt(*sheet.bitmap, 8, 4), grayPixel(10));
    EXPECT_EQ(pixelAt(*sheet.bitmap, 24, 4), grayPixel(20));
    EXPECT_EQ(pixelAt(*sheet.bitmap, 40, 4), grayPixel(30));
    EXPECT_THAT(sheet.holes, IsEmpty());
}

TEST_F(SheetPainter, AFrameThatIsNotThereLeavesAHoleInItsOwnPlace) {
    const FrameAt frameAt = [](ModelTime time) {
        return time == 20 ? nullptr : gray(static_cast<int>(time));
    };
    const PaintedSheet sheet = paintSheet(frameAt, {10, 20, 30}, layout);
    EXPECT_THAT(sheet.holes, ElementsAre(1));
    EXPECT_EQ(pixelAt(*sheet.bitmap, 24, 4), transparent);
    EXPECT_EQ(pixelAt(*sheet.bitmap, 40, 4), grayPixel(30));
}

TEST_F(SheetPainter, AFrameThatFailsLeavesAHole) {
    const FrameAt frameAt = [](ModelTime time) {
        if (time == 10)
            throw std::runtime_error("can't be rendered");
        return gray(static_cast<int>(time));
    };
    const PaintedSheet sheet = paintSheet(frameAt, {10, 20, 30}, layout);
    EXPECT_THAT(sheet.holes, ElementsAre(0));
    EXPECT_EQ(pixelAt(*sheet.bitmap, 8, 4), transparent);
    EXPECT_EQ(pixelAt(*sheet.bitmap, 24, 4), grayPixel(20));
}
