#include "production/GdiplusBitmapThumbnailingHelper.h"

#include "support/GdiplusUser.h"
#include "support/renderer/DrawnCallouts.h"
#include "support/renderer/RenderScript.h"
#include "support/renderer/TestCallout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::MetaBitmap;
using KestoRenderLib::Size;
using TestSupport::burntIn;
using TestSupport::CalloutLook;
using TestSupport::DrawnCallout;
using TestSupport::makeTestCallout;
using TestSupport::pixelOf;
using Picture = std::unique_ptr<Gdiplus::Bitmap>;
using Frame = boost::shared_ptr<MetaBitmap>;

constexpr Gdiplus::ARGB blue = 0xFF0000FF;
constexpr Gdiplus::ARGB red = 0xFFFF0000;

const CalloutLook arrow{.kind = "remix", .shape = "arrow", .style = "basic"};
const CalloutLook text{.kind = "remix", .shape = "text", .style = "bold"};
const CalloutLook drawnSvg{.kind = "TypeWinSVG",
                           .params = {{"DrawTime", __int64{1}}},
                           .edges = {{"DrawPercentageFade", KestoMediaLib::EdgeModification::Edge::Start,
                                      KestoMediaLib::SafeRational(3, 2)}}};

CalloutLook ofSize(CalloutLook look, float width, float height) {
    look.width = width;
    look.height = height;
    return look;
}

Frame fullOf(const Size& size, Gdiplus::ARGB color) {
    Frame frame = MetaBitmap::Create(size, KestoRenderLib::PixelFormat::Premultiplied32);
    TestSupport::fill(*frame, color);
    return frame;
}

class CalloutThumbnail : public ::testing::Test {
protected:
    Picture thumbnailOf(const CalloutLook& look, int width = 0, int height = 0) {
        return Picture(
            GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout(makeTestCallout(look), width, height));
    }
    DrawnCallout overlayOf(const CalloutLook& look) {
        thumbnailOf(look);
        return callouts.drawn().back();
    }
    Size drawnSizeOf(const CalloutLook& look) { return overlayOf(look).size; }
    Size drawnSizeFor(float width, float height) { return drawnSizeOf(ofSize({}, width, height)); }
    __int64 drawingTimeOf(const CalloutLook& look) { return overlayOf(look).time; }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::DrawnCallouts callouts;
};

Size sizeOf(const Picture& picture) {
    return {static_cast<int>(picture->GetWidth()), static_cast<int>(picture->GetHeight())};
}

} // namespace

TEST_F(CalloutThumbnail, AnEmptyPointerIsNull) {
    EXPECT_EQ(GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout({}, 10, 10), nullptr);
}

TEST_F(CalloutThumbnail, ACalloutThatDrawsNothingIsNull) {
    callouts.draw = [](const DrawnCallout&) { return Frame(); };
    EXPECT_FALSE(thumbnailOf({}));
}

TEST_F(CalloutThumbnail, WhatTheDrawerThrowsPassesThrough) {
    callouts.draw = [](const DrawnCallout&) -> Frame { throw std::length_error("too long"); };
    EXPECT_THROW(thumbnailOf({}), std::length_error);
}

TEST_F(CalloutThumbnail, TheCalloutItselfIsDrawnOnTransparentGround) {
    const auto callout = makeTestCallout({});
    const Picture shown(GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout(callout, 0, 0));
    ASSERT_EQ(callouts.drawn().size(), 1U);
    const DrawnCallout overlay = callouts.drawn()[0];
    EXPECT_EQ(overlay.callout, callout);
    EXPECT_TRUE(overlay.transparent);
    EXPECT_TRUE(overlay.antialiased);
    EXPECT_EQ(overlay.scale.width, 1.0F);
    EXPECT_EQ(overlay.scale.height, 1.0F);
}

TEST_F(CalloutThumbnail, ASmallShapeIsEnlargedToDrawAndThenFitted) {
    const Picture shown = thumbnailOf(ofSize({}, 100, 50), 100, 100);
    EXPECT_EQ(callouts.drawn().back().size, (Size{400, 200}));
    ASSERT_TRUE(shown);
    EXPECT_EQ(sizeOf(shown), (Size{100, 50}));
}

TEST_F(CalloutThumbnail, AShapeWhoseSmallerSideIsLongEnoughStaysAsItIs) {
    EXPECT_EQ(drawnSizeFor(300, 300), (Size{300, 300}));
    EXPECT_EQ(drawnSizeFor(200, 300), (Size{200, 300}));
    EXPECT_EQ(drawnSizeFor(201, 201), (Size{201, 201}));
}

TEST_F(CalloutThumbnail, EitherSideMayBeTheSmallerOne) {
    EXPECT_EQ(drawnSizeFor(400, 50), (Size{1600, 200}));
    EXPECT_EQ(drawnSizeFor(50, 400), (Size{200, 1600}));
}

TEST_F(CalloutThumbnail, AnEnlargedSizeIsTruncatedAlsoWhereItIsAHairBelow200) {
    EXPECT_EQ(drawnSizeFor(130, 97), (Size{268, 199}));
}

TEST_F(CalloutThumbnail, ASideOf200BringsAFactorOfOne) {
    EXPECT_EQ(drawnSizeFor(200, 200), (Size{200, 200}));
}

TEST_F(CalloutThumbnail, TheScaleCountsForTheNaturalSize) {
    CalloutLook look = ofSize({}, 200.5F, 101.5F);
    look.horizontalScale = 2;
    look.verticalScale = 3;
    EXPECT_EQ(drawnSizeOf(look), (Size{401, 304}));
}

TEST_F(CalloutThumbnail, ACalloutWithoutAreaIsNull) {
    EXPECT_FALSE(thumbnailOf(ofSize({}, 0, 50)));
    EXPECT_FALSE(thumbnailOf(ofSize({}, 50, 0)));
    EXPECT_FALSE(thumbnailOf(ofSize({}, 0, 0)));
    EXPECT_FALSE(thumbnailOf(ofSize(arrow, std::numeric_limits<float>::quiet_NaN(), -1e30F)));
}

TEST_F(CalloutThumbnail, ArrowsAndLinesAreDrawnAtTheirOwnSize) {
    EXPECT_EQ(drawnSizeOf(ofSize(arrow, 100, 50)), (Size{100, 50}));
    EXPECT_EQ(drawnSizeOf(ofSize({.kind = "TypeWinLine"}, 100, 50)), (Size{100, 50}));
}

TEST_F(CalloutThumbnail, TheDrawerAdjustsTheSizeInPlace) {
    callouts.adjust = [](const Size& size) { return Size{size.width + 7, size.height + 3}; };
    EXPECT_EQ(drawnSizeFor(100, 50), (Size{407, 203}));
    ASSERT_EQ(callouts.adjusted().size(), 1U);
    EXPECT_EQ(callouts.adjusted()[0].natural, (Size{400, 200}));
    EXPECT_TRUE(callouts.adjusted()[0].isOneObject);
}

TEST_F(CalloutThumbnail, AnSvgThatDrawsItselfIsShownDone) {
    EXPECT_EQ(drawingTimeOf(drawnSvg),
              KestoMediaLib::RationalUtil::toKestoTime(KestoMediaLib::SafeRational(3, 2)));
    EXPECT_NE(drawingTimeOf(drawnSvg), 0);
}

TEST_F(CalloutThumbnail, AnSvgWithoutADrawTimeIsShownAtItsStart) {
    CalloutLook look = drawnSvg;
    look.params.clear();
    EXPECT_EQ(drawingTimeOf(look), 0);
    look.params = {{"drawtime", __int64{1}}};
    EXPECT_EQ(drawingTimeOf(look), 0);
}

TEST_F(CalloutThumbnail, ADrawTimeThatIsNoWholeNumberCountsAsNone) {
    CalloutLook look = drawnSvg;
    look.params = {{"DrawTime", 1.0}};
    EXPECT_EQ(drawingTimeOf(look), 0);
}

TEST_F(CalloutThumbnail, AnSvgWithoutAFadeIsShownAtItsStart) {
    CalloutLook look = drawnSvg;
    look.edges[0].name = "Fade";
    EXPECT_EQ(drawingTimeOf(look), 0);
}

TEST_F(CalloutThumbnail, AnyOtherKindIsShownAtItsStart) {
    CalloutLook look = drawnSvg;
    look.kind = "MacSVG";
    EXPECT_EQ(drawingTimeOf(look), 0);
    look.kind = "typewinsvg";
    EXPECT_EQ(drawingTimeOf(look), 0);
}

TEST_F(CalloutThumbnail, BoundsOfZeroGiveTheOverlaysOwnSize) {
    const Picture shown = thumbnailOf(ofSize({}, 100, 50));
    ASSERT_TRUE(shown);
    EXPECT_EQ(sizeOf(shown), (Size{400, 200}));
    EXPECT_EQ(shown->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(pixelOf(*shown, 0, 0), burntIn(0));
    EXPECT_EQ(pixelOf(*shown, 399, 199), burntIn(0));
}

TEST_F(CalloutThumbnail, TheOverlayDecidesTheSizeAndIsNeverEnlarged) {
    callouts.draw = [](const DrawnCallout&) { return fullOf({40, 20}, red); };
    const Picture shown = thumbnailOf({}, 400, 400);
    EXPECT_EQ(sizeOf(shown), (Size{40, 20}));
    EXPECT_EQ(sizeOf(thumbnailOf({}, 20, 20)), (Size{20, 10}));
}

TEST_F(CalloutThumbnail, WhereTheOverlayIsTransparentTheThumbnailIs) {
    callouts.draw = [](const DrawnCallout& overlay) {
        Frame frame = fullOf(overlay.size, 0);
        const Gdiplus::SolidBrush brush{Gdiplus::Color(red)};
        Gdiplus::Graphics(frame->AsGdiplusBitmap().get()).FillRectangle(&brush, 0, 0, 100, 300);
        return frame;
    };
    const Picture shown = thumbnailOf({});
    EXPECT_EQ(pixelOf(*shown, 50, 150), red);
    EXPECT_EQ(pixelOf(*shown, 250, 150) >> 24, 0U);
}

TEST_F(CalloutThumbnail, AnArrowIsDrawnAQuarterWiderAndToTheLeft) {
    // Blue up to 60 and red from there: drawn 125 wide at -37, the edge comes to lie at 38, the end at 88.
    callouts.draw = [](const DrawnCallout& overlay) {
        Frame frame = fullOf(overlay.size, red);
        const Gdiplus::SolidBrush brush{Gdiplus::Color(blue)};
        Gdiplus::Graphics(frame->AsGdiplusBitmap().get()).FillRectangle(&brush, 0, 0, 60, 50);
        return frame;
    };
    const Picture shown = thumbnailOf(ofSize(arrow, 100, 50), 200, 200);
    ASSERT_TRUE(shown);
    EXPECT_EQ(sizeOf(shown), (Size{100, 50}));
    EXPECT_EQ(pixelOf(*shown, 0, 25), blue);
    EXPECT_EQ(pixelOf(*shown, 33, 25), blue);
    EXPECT_EQ(pixelOf(*shown, 43, 25), red);
    EXPECT_EQ(pixelOf(*shown, 84, 25), red);
    EXPECT_EQ(pixelOf(*shown, 87, 0), red);
    EXPECT_EQ(pixelOf(*shown, 88, 25), 0U);
    EXPECT_EQ(pixelOf(*shown, 99, 49), 0U);
}

TEST_F(CalloutThumbnail, OnlyARemixArrowIsMoved) {
    CalloutLook look = ofSize(arrow, 300, 300);
    look.kind = "Remix";
    EXPECT_EQ(pixelOf(*thumbnailOf(look), 299, 299), burntIn(0));
    look = ofSize(arrow, 300, 300);
    look.shape = "Arrow";
    EXPECT_EQ(pixelOf(*thumbnailOf(look), 299, 299), burntIn(0));
}

TEST_F(CalloutThumbnail, ATextIsDrawnPlainly) {
    const Picture shown = thumbnailOf(text);
    EXPECT_EQ(pixelOf(*shown, 0, 0), burntIn(0));
    EXPECT_EQ(pixelOf(*shown, 299, 299), burntIn(0));
}

TEST_F(CalloutThumbnail, ABoldTextArrowIsDrawnPlainlyAsItsShapeIsNotThatOfAText) {
    CalloutLook look = text;
    look.shape = "text-arrow";
    const Picture shown = thumbnailOf(look);
    EXPECT_EQ(pixelOf(*shown, 0, 0), burntIn(0));
    EXPECT_EQ(pixelOf(*shown, 299, 299), burntIn(0));
}

TEST_F(CalloutThumbnail, ATextThatTurnsIntoABoldTextArrowIsDrawnEnlargedAndMoved) {
    CalloutLook look = text;
    look.changingShape = [asked = std::make_shared<int>(0)] {
        // Twice for the arrow, once for the text, and then for the text arrow.
        return ++*asked <= 3 ? "text" : "text-arrow";
    };
    callouts.draw = [](const DrawnCallout& overlay) {
        Frame frame = fullOf(overlay.size, red);
        const Gdiplus::SolidBrush brush{Gdiplus::Color(blue)};
        Gdiplus::Graphics(frame->AsGdiplusBitmap().get()).FillRectangle(&brush, 0, 0, 100, 100);
        return frame;
    };
    const Picture shown = thumbnailOf(look); // 375 by 375 pixels of the overlay, at 75 and 75
    EXPECT_EQ(sizeOf(shown), (Size{300, 300}));
    EXPECT_EQ(pixelOf(*shown, 74, 150), 0U);
    EXPECT_EQ(pixelOf(*shown, 150, 74), 0U);
    EXPECT_EQ(pixelOf(*shown, 75, 75), blue);
    EXPECT_EQ(pixelOf(*shown, 195, 195), blue);
    EXPECT_EQ(pixelOf(*shown, 205, 195), red);
    EXPECT_EQ(pixelOf(*shown, 299, 299), red);
}

TEST_F(CalloutThumbnail, ACalloutWithoutADrawingIsShownPlainly) {
    CalloutLook look = ofSize(arrow, 100, 50);
    look.hasDrawing = false;
    EXPECT_EQ(drawnSizeOf(look), (Size{400, 200}));
    look.hasAttributes = false;
    EXPECT_EQ(drawnSizeOf(look), (Size{400, 200}));
}

TEST_F(CalloutThumbnail, ADrawingWithoutWordsIsShownPlainly) {
    CalloutLook look = ofSize(arrow, 100, 50);
    look.hasAttributes = false;
    EXPECT_EQ(drawnSizeOf(look), (Size{400, 200}));
}

} // namespace KestoThumbnailer
