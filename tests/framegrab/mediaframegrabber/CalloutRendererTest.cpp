#include "framegrab/mediaframegrabber/MediaFrameGrabber_CalloutRenderer.h"

#include "support/GdiplusUser.h"
#include "support/renderer/DrawnCallouts.h"
#include "support/renderer/RenderScript.h"
#include "support/renderer/TestCallout.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::EdgeModification;
using KestoMediaLib::SafeRational;
using KestoRenderLib::MetaBitmap;
using KestoRenderLib::Size;
using TestSupport::CalloutLook;
using TestSupport::DrawnCallout;
using TestSupport::makeTestCallout;
using Frame = boost::shared_ptr<MetaBitmap>;

const __int64 oneAndAHalfSeconds = KestoMediaLib::RationalUtil::toKestoTime(SafeRational(3, 2));
const __int64 twoSeconds = KestoMediaLib::RationalUtil::toKestoTime(2);

/// Of either kind that draws itself, with both of its ends.
CalloutLook drawingItself(const std::string& kind) {
    return {.kind = kind,
            .params = {{"DrawTime", 1.0}},
            .edges = {{"DrawPercentageFade", EdgeModification::Edge::Start, SafeRational(3, 2)},
                      {"Visual", EdgeModification::Edge::Start, 2}}};
}

class CalloutRenderer : public ::testing::Test {
protected:
    static Frame frameOf(const CalloutLook& look, bool keepOrientation = true, Size size = {}) {
        return MediaFrameGrabber_CalloutRenderer(makeTestCallout(look)).frameAtTime(7, keepOrientation, size);
    }
    DrawnCallout overlayOf(const CalloutLook& look) {
        frameOf(look);
        return callouts.drawn().back();
    }
    Size drawnSizeOf(const std::string& kind, const std::string& shape, float width, float height) {
        return overlayOf({.kind = kind, .shape = shape, .width = width, .height = height}).size;
    }
    __int64 drawingTimeOf(const CalloutLook& look) { return overlayOf(look).time; }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::DrawnCallouts callouts;
};

} // namespace

TEST_F(CalloutRenderer, WithoutADrawerItIsRefused) {
    try {
        const MediaFrameGrabber_CalloutRenderer renderer(makeTestCallout({}), nullptr);
        FAIL();
    } catch (const std::runtime_error& refusal) {
        EXPECT_STREQ(refusal.what(), "MediaFrameGrabber: CalloutDrawer could not be created");
    }
}

TEST_F(CalloutRenderer, ThatThereIsNoCalloutIsToldBeforeThatThereIsNoDrawer) {
    EXPECT_THROW(MediaFrameGrabber_CalloutRenderer(nullptr, nullptr), std::invalid_argument);
}

TEST_F(CalloutRenderer, TheCalloutIsDrawnOnTransparentGroundAtAScaleOfOne) {
    const DrawnCallout overlay = overlayOf({});
    EXPECT_TRUE(overlay.transparent);
    EXPECT_TRUE(overlay.antialiased);
    EXPECT_EQ(overlay.scale.width, 1.0F);
    EXPECT_EQ(overlay.scale.height, 1.0F);
}

TEST_F(CalloutRenderer, ASmallShapeIsEnlargedToDraw) {
    EXPECT_EQ(drawnSizeOf("remix", "rectangle", 100, 50), (Size{400, 200}));
    EXPECT_EQ(drawnSizeOf("remix", "rectangle", 50, 100), (Size{200, 400}));
    EXPECT_EQ(drawnSizeOf("remix", "rectangle", 130, 97), (Size{268, 199}));
}

TEST_F(CalloutRenderer, AShapeWhoseSmallerSideIsLongEnoughStaysAsItIs) {
    EXPECT_EQ(drawnSizeOf("remix", "rectangle", 201, 201), (Size{201, 201}));
    EXPECT_EQ(drawnSizeOf("remix", "rectangle", 200, 300), (Size{200, 300}));
    EXPECT_EQ(drawnSizeOf("remix", "rectangle", 300, 300), (Size{300, 300}));
}

TEST_F(CalloutRenderer, AnArrowOfAnyKindStaysAsSmallAsItIs) {
    EXPECT_EQ(drawnSizeOf("remix", "arrow", 100, 50), (Size{100, 50}));
    EXPECT_EQ(drawnSizeOf("MacSVG", "arrow", 100, 50), (Size{100, 50}));
    EXPECT_EQ(drawnSizeOf("remix", "Arrow", 100, 50), (Size{400, 200}));
}

TEST_F(CalloutRenderer, ALineIsEnlargedAsAnyOtherShape) {
    EXPECT_EQ(drawnSizeOf("TypeWinLine", "line", 100, 50), (Size{400, 200}));
}

TEST_F(CalloutRenderer, ADrawingWithoutAShapeIsEnlarged) {
    EXPECT_EQ(overlayOf({.shape = "arrow", .width = 100, .height = 50, .hasAttributes = false}).size,
              (Size{400, 200}));
}

TEST_F(CalloutRenderer, TheScaleCountsForTheNaturalSize) {
    EXPECT_EQ(
        overlayOf(
            {.shape = "arrow", .width = 200.5F, .height = 101.5F, .horizontalScale = 2, .verticalScale = 3})
            .size,
        (Size{401, 304}));
}

TEST_F(CalloutRenderer, TheDrawerAdjustsTheSizeInPlace) {
    callouts.adjust = [](const Size& size) { return Size{size.width + 7, size.height + 3}; };
    EXPECT_EQ(drawnSizeOf("remix", "rectangle", 100, 50), (Size{407, 203}));
    EXPECT_EQ(callouts.adjusted().at(0).natural, (Size{400, 200}));
    EXPECT_TRUE(callouts.adjusted().at(0).isOneObject);
}

TEST_F(CalloutRenderer, WhatDrawsItselfIsShownDoneByTheEndOfItsKind) {
    EXPECT_EQ(drawingTimeOf(drawingItself("TypeWinSVG")), oneAndAHalfSeconds);
    EXPECT_EQ(drawingTimeOf(drawingItself("MacSVG")), twoSeconds);
}

TEST_F(CalloutRenderer, TheEndOfTheOtherKindDoesNotCount) {
    CalloutLook win = drawingItself("TypeWinSVG");
    win.edges.erase(win.edges.begin());
    EXPECT_EQ(drawingTimeOf(win), 0);
    CalloutLook mac = drawingItself("MacSVG");
    mac.edges.pop_back();
    EXPECT_EQ(drawingTimeOf(mac), 0);
}

TEST_F(CalloutRenderer, AnyOtherKindIsShownAtItsStart) {
    for (const char* kind : {"remix", "TypeWinLine", "macsvg", ""})
        EXPECT_EQ(drawingTimeOf(drawingItself(kind)), 0) << kind;
}

TEST_F(CalloutRenderer, ADrawTimeThatIsNoFractionCountsAsNone) {
    CalloutLook look = drawingItself("TypeWinSVG");
    look.params = {{"DrawTime", __int64{1}}};
    EXPECT_EQ(drawingTimeOf(look), 0);
    look.params.clear();
    EXPECT_EQ(drawingTimeOf(look), 0);
}

TEST_F(CalloutRenderer, WithoutItsOrientationTheOverlayIsUpsideDown) {
    callouts.draw = [](const DrawnCallout& overlay) {
        Frame frame = MetaBitmap::Create(overlay.size, KestoRenderLib::PixelFormat::Premultiplied32);
        TestSupport::fill(*frame, 0xFF0000FF);
        frame->AsGdiplusBitmap()->SetPixel(5, 0, Gdiplus::Color(0xFFFF0000));
        return frame;
    };
    EXPECT_EQ(TestSupport::pixelOf(*frameOf({})->AsGdiplusBitmap(), 5, 0), 0xFFFF0000);
    EXPECT_EQ(TestSupport::pixelOf(*frameOf({}, /*keepOrientation=*/false)->AsGdiplusBitmap(), 5, 299),
              0xFFFF0000);
}

TEST_F(CalloutRenderer, ASizeThatOthersRefuseDoesNotCountEither) {
    EXPECT_EQ(frameOf({}, true, {-1, -1})->Size(), (Size{300, 300}));
}

TEST_F(CalloutRenderer, WhatDrawsNothingGivesAnEmptyFrameInEitherOrientation) {
    callouts.draw = [](const DrawnCallout&) { return Frame(); };
    EXPECT_FALSE(frameOf({}));
    EXPECT_FALSE(frameOf({}, /*keepOrientation=*/false));
}

TEST_F(CalloutRenderer, ACalloutWithoutAreaGivesAnEmptyFrame) {
    EXPECT_FALSE(frameOf({.width = 0, .height = 50}));
}

} // namespace KestoThumbnailer
