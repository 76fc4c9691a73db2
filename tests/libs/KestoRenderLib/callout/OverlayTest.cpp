#include "libs/KestoRenderLib/callout/Overlay.h"

#include "KestoMediaLib/CalloutMedia.h"
#include "KestoMediaLib/CalloutParams.h"
#include "platform/CalloutDrawer.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <thread>

using namespace CalloutTests;
using KestoRenderLib::CalloutDrawer;
using KestoRenderLib::Size;

namespace {

const Params everything = {{"Text", std::string("Some words")},
                           {"FillColor", __int64{0x80204060}},
                           {"Shadow", true},
                           {"BorderColor", __int64{0x40F0E0D0}},
                           {"TextColor", __int64{0xC0FF8000}},
                           {"DashStyle", std::string("dash-dot")}};

std::vector<Sketch> everyShape(const Params& params) {
    std::vector<Sketch> sketches;
    for (const std::string_view shape : KestoMediaLib::calloutShapes())
        for (const std::string_view style : KestoMediaLib::calloutStyles())
            sketches.push_back({.shape = std::string(shape), .params = params, .style = std::string(style)});
    return sketches;
}

std::string nameOf(const Sketch& sketch) {
    return sketch.kind + " " + sketch.style + " " + sketch.shape;
}

/// Each colour at most as large as its alpha.
bool isPremultiplied(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    return (argb >> 16 & 255) <= alpha && (argb >> 8 & 255) <= alpha && (argb & 255) <= alpha;
}

Size adjusted(Size size) {
    CalloutDrawer(calloutOf({}), {}, false).AdjustDimensions(size, size);
    return size;
}

bool drawsAt(Size size, KestoRenderLib::SizeF scale = {1, 1}) {
    return CalloutDrawer(calloutOf({}), {}, false).GenerateOverlay(size, scale, true, true) != nullptr;
}

} // namespace

TEST(CalloutOverlay, EveryShapeHasALookWithoutAnyParameter) {
    for (const Sketch& sketch : everyShape({})) {
        const Overlay overlay = draw(sketch);
        if (sketch.shape == "text") {
            EXPECT_TRUE(overlay.isEmpty()) << nameOf(sketch);
            continue;
        }
        ASSERT_FALSE(overlay.isEmpty()) << nameOf(sketch);
        EXPECT_TRUE(overlay.hasAnything()) << nameOf(sketch);
    }
}

TEST(CalloutOverlay, PixelsArePremultiplied) {
    for (const Sketch& sketch : everyShape(everything)) {
        const Overlay overlay = draw(sketch);
        ASSERT_FALSE(overlay.isEmpty()) << nameOf(sketch);
        EXPECT_EQ(overlay.painted([](std::uint32_t argb) { return !isPremultiplied(argb); }), Extent())
            << nameOf(sketch);
    }
}

TEST(CalloutOverlay, CornersOutsideOfAShapeAreTransparent) {
    for (const std::string shape : {"arrow", "text-arrow", "ellipse", "rounded-rectangle", "speech-bubble"}) {
        const Overlay overlay = draw({.shape = shape});
        ASSERT_FALSE(overlay.isEmpty()) << shape;
        EXPECT_EQ(overlay.at(0, 0), 0U) << shape;
        EXPECT_EQ(overlay.at(199, 99), 0U) << shape;
    }
}

TEST(CalloutOverlay, OpaqueGroundIsWhiteAroundTheCallout) {
    const Overlay overlay = draw({.shape = "ellipse", .params = {{"FillColor", red}}, .transparent = false});
    EXPECT_EQ(overlay.at(0, 0), 0xFFFFFFFFU);
    EXPECT_EQ(overlay.at(100, 50), 0xFFFF0000U);
    EXPECT_EQ(overlay.painted([](std::uint32_t argb) { return argb >> 24 != 255; }), Extent());
}

TEST(CalloutOverlay, WithoutAntialiasingEachPixelIsInsideOrOutside) {
    for (const std::string shape :
         {"arrow", "text", "ellipse", "rounded-rectangle", "speech-bubble", "line"}) {
        const Overlay overlay =
            draw({.shape = shape,
                  .params = {{"Text", std::string("Words")}, {"StartY", 1.0}, {"EndY", 0.0}},
                  .antialiased = false});
        ASSERT_FALSE(overlay.isEmpty()) << shape;
        EXPECT_TRUE(overlay.hasAnything()) << shape;
        EXPECT_EQ(overlay.painted([](std::uint32_t argb) { return argb >> 24 != 0 && argb >> 24 != 255; }),
                  Extent())
            << shape;
    }
}

TEST(CalloutOverlay, TheScaleMultipliesEverything) {
    const Params params = {{"BorderColor", red}, {"BorderWidth", 5.0}};
    const Overlay overlay = draw({.params = params, .width = 40, .height = 30, .scale = 3});
    ASSERT_FALSE(overlay.isEmpty());
    EXPECT_EQ(overlay.width(), 120);
    EXPECT_EQ(overlay.height(), 90);
    EXPECT_EQ(overlay.paintedInRow(45), 2 * 15);
}

TEST(CalloutOverlay, ALargerBoxThanTheCalloutsOwnEnlargesTheDrawing) {
    CalloutDrawer drawer(
        calloutOf({.params = {{"BorderColor", red}, {"BorderWidth", 5.0}}, .width = 40, .height = 30}), {},
        false);
    const Overlay overlay(drawer.GenerateOverlay({80, 60}, {1, 1}, true, true));
    EXPECT_EQ(overlay.paintedInRow(30), 2 * 10);
}

TEST(CalloutOverlay, ABoxOfAnotherShapeDoesNotStretchTheDrawing) {
    CalloutDrawer drawer(
        calloutOf({.params = {{"BorderColor", red}, {"BorderWidth", 5.0}}, .width = 40, .height = 30}), {},
        false);
    const Overlay overlay(drawer.GenerateOverlay({160, 60}, {1, 1}, true, true));
    EXPECT_EQ(overlay.paintedInRow(30), 2 * 10);
    EXPECT_EQ(overlay.paintedInColumn(80), 2 * 10);
}

TEST(CalloutOverlay, UnknownWordsDrawNothing) {
    EXPECT_TRUE(draw({.shape = "hexagon"}).isEmpty());
    EXPECT_TRUE(draw({.shape = "Arrow"}).isEmpty());
    EXPECT_TRUE(draw({.shape = "arrow", .kind = "Remix"}).isEmpty());
    EXPECT_TRUE(draw({.shape = "", .kind = "TypeWinSVG"}).isEmpty());
}

TEST(CalloutOverlay, NoCalloutAndNoDrawingDrawNothing) {
    EXPECT_FALSE(CalloutDrawer({}, {}, false).GenerateOverlay({20, 20}, {1, 1}, true, true));
    const auto hollow = boost::make_shared<KestoMediaLib::CalloutMedia>(nullptr);
    hollow->setExtent({20, 20});
    EXPECT_FALSE(CalloutDrawer(hollow, {}, false).GenerateOverlay({20, 20}, {1, 1}, true, true));
}

TEST(CalloutOverlay, AnInvisibleCalloutDrawsNothing) {
    EXPECT_TRUE(draw({.shape = "line", .params = {{"StrokeWidth", 0.0}}}).isEmpty());
    EXPECT_TRUE(draw({.params = {{"BorderWidth", 0.0}}}).isEmpty());
    EXPECT_TRUE(draw({.shape = "highlight", .params = {{"FillColor", __int64{0x00FFFFFF}}}}).isEmpty());
}

TEST(CalloutOverlay, SizesThatAreNoneAreRefused) {
    EXPECT_TRUE(drawsAt({1, 1}));
    EXPECT_FALSE(drawsAt({0, 10}));
    EXPECT_FALSE(drawsAt({10, -1}));
    EXPECT_FALSE(drawsAt({40000, 10}));
    EXPECT_FALSE(drawsAt({32000, 32000}));
    EXPECT_FALSE(drawsAt({std::numeric_limits<int>::max(), std::numeric_limits<int>::max()}));
    EXPECT_FALSE(drawsAt({10, 10}, {0, 1}));
    EXPECT_FALSE(drawsAt({10, 10}, {1, -1}));
    EXPECT_FALSE(drawsAt({10, 10}, {NAN, 1}));
    EXPECT_FALSE(drawsAt({10, 10}, {std::numeric_limits<float>::infinity(), 1}));
}

TEST(CalloutOverlay, ACalloutWithoutASizeIsDrawnInTheBoxThatIsAskedFor) {
    const Overlay overlay(CalloutDrawer(calloutOf({.width = 0, .height = 0}), {}, false)
                              .GenerateOverlay({30, 20}, {1, 1}, true, true));
    ASSERT_FALSE(overlay.isEmpty());
    EXPECT_EQ(overlay.painted(), (Extent{0, 0, 30, 20}));
}

TEST(CalloutDimensions, UsualSizesStayAsTheyAre) {
    EXPECT_EQ(adjusted({300, 200}), (Size{300, 200}));
    EXPECT_EQ(adjusted({16384, 1}), (Size{16384, 1}));
}

TEST(CalloutDimensions, ThereIsAtLeastOnePixel) {
    EXPECT_EQ(adjusted({0, -5}), (Size{1, 1}));
    EXPECT_EQ(adjusted({std::numeric_limits<int>::min(), 7}), (Size{1, 7}));
}

TEST(CalloutDimensions, AbsurdSizesShrinkInProportion) {
    EXPECT_EQ(adjusted({65536, 256}), (Size{16384, 64}));
    EXPECT_EQ(adjusted({16384, 16384}), (Size{8192, 8192}));
    EXPECT_EQ(adjusted({std::numeric_limits<int>::max(), 1}), (Size{16384, 1}));
}

TEST(CalloutDimensions, BothArgumentsGetTheSize) {
    Size size = {0, 100000};
    Size other;
    CalloutDrawer(calloutOf({}), {}, false).AdjustDimensions(size, other);
    EXPECT_EQ(size, other);
    EXPECT_EQ(size, (Size{1, 16384}));
}

TEST(CalloutOverlay, ParametersOfAnotherTypeOrRangeAreTakenAsNear) {
    const Overlay whole = draw({.params = {{"BorderColor", red}, {"BorderWidth", __int64{5}}}});
    EXPECT_EQ(whole.paintedInRow(50), 10);
    const Overlay wild = draw({.params = {{"BorderColor", std::string("red")},
                                          {"BorderWidth", NAN},
                                          {"CornerRadius", -4.0},
                                          {"Text", true},
                                          {"Alignment", std::string("nowhere")}}});
    EXPECT_EQ(wild.painted(), (Extent{0, 0, 200, 100}));
}

TEST(CalloutOverlay, ThreadsDrawAtOnce) {
    const auto drawMany = [](const std::string& text, std::vector<std::uint32_t>& pixels) {
        for (int round = 0; round < 5; ++round) {
            const Overlay overlay = draw({.shape = "speech-bubble",
                                          .params = {{"Text", text}, {"Shadow", true}},
                                          .width = 80,
                                          .height = 60});
            for (int y = 0; y < 60; ++y)
                for (int x = 0; x < 80; ++x)
                    pixels.push_back(overlay.at(x, y));
        }
    };
    std::vector<std::uint32_t> here;
    std::vector<std::uint32_t> there;
    std::thread other(drawMany, "Both say this", std::ref(there));
    drawMany("Both say this", here);
    other.join();
    EXPECT_EQ(here, there);
}
