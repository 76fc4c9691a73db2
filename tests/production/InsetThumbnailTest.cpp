#include "production/InsetThumbnail.h"

#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <memory>

namespace KestoThumbnailer {

namespace {

using TestSupport::pixelOf;
using Picture = std::unique_ptr<Gdiplus::Bitmap>;
using Source = boost::shared_ptr<Gdiplus::Bitmap>;

constexpr Gdiplus::ARGB red = 0xFFFF0000;
constexpr Gdiplus::ARGB blue = 0xFF0000FF;
constexpr Gdiplus::ARGB green = 0xFF00FF00;

class InsetThumbnail : public ::testing::Test {
protected:
    static Source filled(int width, int height, Gdiplus::ARGB color,
                         PixelFormat format = PixelFormat32bppPARGB) {
        Source bitmap(new Gdiplus::Bitmap(width, height, format));
        Gdiplus::Graphics(bitmap.get()).Clear(Gdiplus::Color(color));
        return bitmap;
    }
    static Picture compose(const Source& base, const Source& inset, int width = 0, int height = 0) {
        return Picture(ComposeInsetThumbnail(base, inset, width, height));
    }

    TestSupport::GdiplusUser gdiplus;
};

void expectSize(const Picture& picture, UINT width, UINT height) {
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->GetWidth(), width);
    EXPECT_EQ(picture->GetHeight(), height);
}

} // namespace

TEST_F(InsetThumbnail, WithoutAPictureIsNull) {
    EXPECT_FALSE(compose({}, {}));
    EXPECT_FALSE(compose({}, {}, 100, 100));
}

TEST_F(InsetThumbnail, OfTheBaseAloneIsItsWhole) {
    const Source base = filled(20, 10, red, PixelFormat24bppRGB);
    const Picture shown = compose(base, {});
    expectSize(shown, 20, 10);
    EXPECT_EQ(shown->GetPixelFormat(), PixelFormat32bppPARGB);
    EXPECT_EQ(pixelOf(*shown, 0, 0), red);
    EXPECT_EQ(pixelOf(*shown, 19, 9), red);
}

TEST_F(InsetThumbnail, OfTheInsetAloneIsItsWhole) {
    const Picture shown = compose({}, filled(20, 10, blue));
    expectSize(shown, 20, 10);
    EXPECT_EQ(shown->GetPixelFormat(), PixelFormat32bppPARGB);
    EXPECT_EQ(pixelOf(*shown, 0, 0), blue);
    EXPECT_EQ(pixelOf(*shown, 19, 9), blue);
}

TEST_F(InsetThumbnail, TheInsetFillsTheBottomRightQuarter) {
    const Picture shown = compose(filled(164, 92, red), filled(82, 46, blue));
    expectSize(shown, 164, 92);
    EXPECT_EQ(pixelOf(*shown, 82, 46), blue);
    EXPECT_EQ(pixelOf(*shown, 163, 46), blue);
    EXPECT_EQ(pixelOf(*shown, 82, 91), blue);
    EXPECT_EQ(pixelOf(*shown, 163, 91), blue);
    EXPECT_EQ(pixelOf(*shown, 81, 46), red);
    EXPECT_EQ(pixelOf(*shown, 82, 45), red);
    EXPECT_EQ(pixelOf(*shown, 163, 45), red);
    EXPECT_EQ(pixelOf(*shown, 81, 91), red);
}

TEST_F(InsetThumbnail, HalvesOfOddLengthsAreRoundedDown) {
    const Picture shown = compose(filled(165, 93, red), filled(20, 10, blue));
    EXPECT_EQ(pixelOf(*shown, 83, 47), blue);
    EXPECT_EQ(pixelOf(*shown, 164, 92), blue);
    EXPECT_EQ(pixelOf(*shown, 82, 47), red);
    EXPECT_EQ(pixelOf(*shown, 83, 46), red);
}

TEST_F(InsetThumbnail, TheInsetIsShownWholeWhateverItsShape) {
    const Source inset = filled(10, 400, blue);
    for (int y = 0; y < 400; ++y)
        for (int x = 0; x < 5; ++x)
            inset->SetPixel(x, y, Gdiplus::Color(green));
    const Picture shown = compose(filled(80, 40, red), inset);
    EXPECT_EQ(pixelOf(*shown, 44, 30), green);
    EXPECT_EQ(pixelOf(*shown, 76, 30), blue);
    EXPECT_EQ(pixelOf(*shown, 44, 39), green);
    EXPECT_EQ(pixelOf(*shown, 76, 21), blue);
}

TEST_F(InsetThumbnail, ATransparentInsetLetsTheBaseShow) {
    const Picture shown = compose(filled(40, 20, red), filled(20, 10, 0));
    EXPECT_EQ(pixelOf(*shown, 30, 15), red);
}

TEST_F(InsetThumbnail, TheSourcesStayAsTheyAre) {
    const Source base = filled(40, 20, red);
    const Source inset = filled(20, 10, blue);
    compose(base, inset, 10, 10);
    EXPECT_EQ(pixelOf(*base, 39, 19), red);
    EXPECT_EQ(base->GetWidth(), 40U);
    EXPECT_EQ(inset->GetWidth(), 20U);
}

TEST_F(InsetThumbnail, IsFittedIntoTheBox) {
    expectSize(compose(filled(164, 92, red), {}, 164, 92), 164, 92);
    expectSize(compose(filled(164, 92, red), {}, 82, 92), 82, 46);
    expectSize(compose(filled(164, 92, red), {}, 0, 46), 82, 46);
    expectSize(compose(filled(164, 92, red), {}, 0, 0), 164, 92);
    expectSize(compose(filled(164, 92, red), {}, -1, 10), 164, 92);
}

TEST_F(InsetThumbnail, OfABaseWithoutASizeIsNull) {
    EXPECT_FALSE(compose(filled(0, 0, red), filled(20, 10, blue)));
    const Picture shown = compose(filled(40, 20, red), filled(0, 0, blue));
    EXPECT_EQ(pixelOf(*shown, 39, 19), red);
}

} // namespace KestoThumbnailer
