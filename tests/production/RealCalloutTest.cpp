// Callouts by the real drawer, told by their pixels.

#include "framegrab/MediaFrameGrabber.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "scheduling/CalloutThumbnailLoader.h"

#include "KestoMediaLib/CalloutMedia.h"
#include "platform/Threading.h"
#include "support/GdiplusUser.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::CalloutMedia;
using KestoMediaLib::VectorDrawing;
using KestoRenderLib::Size;
using Frame = boost::shared_ptr<KestoRenderLib::MetaBitmap>;
using Picture = std::shared_ptr<Gdiplus::Bitmap>;

/// One line, from 10 to 290.
constexpr const char* lineSvg =
    R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 300 300">)"
    R"(<path d="M10 150 H290" stroke="#ff0000" stroke-width="20" fill="none"/></svg>)";

struct Words {
    std::string kind;
    std::string shape;
    std::string style = "plain";
    VectorDrawing::Params params = {};
};

boost::shared_ptr<CalloutMedia> calloutOf(const Words& words, double width, double height) {
    auto callout = boost::make_shared<CalloutMedia>(
        boost::make_shared<VectorDrawing>(words.kind, words.shape, words.style, words.params));
    callout->setExtent({width, height});
    return callout;
}

const Words arrow{.kind = "remix", .shape = "arrow"};
const Words text{.kind = "remix", .shape = "text", .params = {{"Text", "Look"}}};

/// Of what is not transparent; the far ends lie outside.
struct Ink {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool isEmpty() const { return right <= left; }
    friend bool operator==(const Ink&, const Ink&) = default;
};

std::ostream& operator<<(std::ostream& out, const Ink& ink) {
    return out << ink.left << ".." << ink.right << " by " << ink.top << ".." << ink.bottom;
}

Ink inkOf(Gdiplus::Bitmap& bitmap) {
    constexpr int halfSeen = 128;
    const int width = static_cast<int>(bitmap.GetWidth());
    const int height = static_cast<int>(bitmap.GetHeight());
    Ink ink{.left = width, .top = height};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (TestSupport::pixelOf(bitmap, x, y) >> 24U >= halfSeen)
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                       std::max(ink.bottom, y + 1)};
    return ink.isEmpty() ? Ink() : ink;
}

Ink inkOf(const Frame& frame) {
    return inkOf(*frame->AsGdiplusBitmap());
}

Picture thumbnailOf(const boost::shared_ptr<const CalloutMedia>& callout, int width = 0, int height = 0) {
    return Picture(GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout(callout, width, height));
}

Frame frameOf(const boost::shared_ptr<const CalloutMedia>& callout, bool keepOrientation = true) {
    return MediaFrameGrabber(callout).frameAtTime(0, keepOrientation, {});
}

Size sizeOf(const Picture& picture) {
    return {static_cast<int>(picture->GetWidth()), static_cast<int>(picture->GetHeight())};
}

class RealCallout : public ::testing::Test {
protected:
    TestSupport::GdiplusUser gdiplus;
};

} // namespace

TEST_F(RealCallout, AnArrowIsShownAQuarterWiderAndToTheLeft) {
    const auto callout = calloutOf(arrow, 400, 200);
    const Ink drawn = inkOf(frameOf(callout));
    const Picture shown = thumbnailOf(callout);
    ASSERT_TRUE(shown);
    EXPECT_EQ(sizeOf(shown), (Size{400, 200}));
    const Ink seen = inkOf(*shown);
    EXPECT_EQ(seen.left, 0); // the tail is cut off
    EXPECT_NEAR(seen.right, drawn.right * 5 / 4 - 150, 1);
    EXPECT_NEAR(seen.top, drawn.top, 1);
    EXPECT_NEAR(seen.bottom, drawn.bottom, 1);
}

TEST_F(RealCallout, ASmallArrowIsNotEnlargedAndLeavesTheRightmostColumnsEmpty) {
    const Picture shown = thumbnailOf(calloutOf(arrow, 100, 50), 200, 200);
    ASSERT_TRUE(shown);
    EXPECT_EQ(sizeOf(shown), (Size{100, 50}));
    EXPECT_LE(inkOf(*shown).right, 88); // 125 wide at -37
    for (int x = 88; x < 100; ++x)
        EXPECT_EQ(TestSupport::pixelOf(*shown, x, 25) >> 24U, 0U) << x;
}

TEST_F(RealCallout, AnArrowsHeadIsWhereItEnds) {
    const auto columnOf = [](const Frame& frame, int x) {
        int covered = 0;
        for (int y = 0; y < frame->GetHeight(); ++y)
            covered += TestSupport::pixelOf(*frame->AsGdiplusBitmap(), x, y) >> 24U >= 128 ? 1 : 0;
        return covered;
    };
    const Frame right = frameOf(calloutOf(arrow, 400, 200));
    const Ink ink = inkOf(right);
    EXPECT_GT(columnOf(right, ink.right - 30), columnOf(right, ink.left + 30));
    Words turned = arrow;
    turned.params = {{"StartX", 1.0}, {"StartY", 0.5}, {"EndX", 0.0}, {"EndY", 0.5}};
    const Frame left = frameOf(calloutOf(turned, 400, 200));
    EXPECT_GT(columnOf(left, 30), columnOf(left, 370));
}

TEST_F(RealCallout, ATextIsShownPlainlyInsideItsBox) {
    const auto callout = calloutOf(text, 300, 250);
    const Ink drawn = inkOf(frameOf(callout));
    ASSERT_FALSE(drawn.isEmpty());
    EXPECT_GT(drawn.left, 0);
    EXPECT_LT(drawn.right, 300);
    EXPECT_NEAR((drawn.left + drawn.right) / 2, 150, 10);
    EXPECT_EQ(inkOf(*thumbnailOf(callout)), drawn);
}

TEST_F(RealCallout, ABoldTextArrowIsShownPlainlyAsItsShapeIsNotThatOfAText) {
    Words words = text;
    words.shape = "text-arrow";
    words.style = "bold";
    const auto callout = calloutOf(words, 300, 250);
    EXPECT_EQ(inkOf(*thumbnailOf(callout)), inkOf(frameOf(callout)));
}

TEST_F(RealCallout, ASmallShapeIsDrawnLargeAndFittedAndFillsItsBox) {
    const auto callout = calloutOf({.kind = "remix", .shape = "rectangle"}, 100, 50);
    EXPECT_EQ(frameOf(callout)->Size(), (Size{400, 200}));
    const Picture shown = thumbnailOf(callout, 100, 100);
    EXPECT_EQ(sizeOf(shown), (Size{100, 50}));
    EXPECT_EQ(inkOf(*shown), (Ink{0, 0, 100, 50}));
    EXPECT_EQ(TestSupport::pixelOf(*shown, 50, 25) >> 24U, 0U); // it has no fill
}

TEST_F(RealCallout, ALineIsShownAtItsOwnSizeInAThumbnailAndEnlargedInAFrame) {
    const auto callout = calloutOf({.kind = "TypeWinLine", .shape = "line"}, 100, 50);
    EXPECT_EQ(sizeOf(thumbnailOf(callout)), (Size{100, 50}));
    EXPECT_FALSE(inkOf(*thumbnailOf(callout)).isEmpty());
    EXPECT_EQ(frameOf(callout)->Size(), (Size{400, 200}));
}

TEST_F(RealCallout, RoundShapesHaveTransparentCorners) {
    for (const char* shape : {"ellipse", "rounded-rectangle"}) {
        const Picture shown = thumbnailOf(calloutOf(
            {.kind = "remix", .shape = shape, .params = {{"FillColor", __int64{0xFF00FF00}}}}, 300, 250));
        for (const auto& [x, y] : {std::pair{0, 0}, {299, 0}, {0, 249}, {299, 249}})
            EXPECT_EQ(TestSupport::pixelOf(*shown, x, y) >> 24U, 0U) << shape;
        EXPECT_EQ(TestSupport::pixelOf(*shown, 150, 125), 0xFF00FF00) << shape;
    }
}

TEST_F(RealCallout, AThumbnailShowsAnSvgThatDrawsItselfDoneIfItsTimeIsAWholeNumber) {
    const auto drawing = [](const VectorDrawing::Params& timing) {
        Words words{.kind = "TypeWinSVG", .shape = "rectangle", .params = timing};
        words.params.emplace("Svg", lineSvg);
        auto callout = calloutOf(words, 300, 300);
        callout->addEdgeModification({.name = "DrawPercentageFade", .duration = 2});
        return callout;
    };
    const Ink all = inkOf(frameOf(drawing({})));
    ASSERT_NEAR(all.right - all.left, 280, 2);
    EXPECT_EQ(inkOf(*thumbnailOf(drawing({{"DrawTime", __int64{1}}}))), all);
    EXPECT_TRUE(inkOf(*thumbnailOf(drawing({{"DrawTime", 1.0}}))).isEmpty());
    EXPECT_EQ(inkOf(*thumbnailOf(drawing({}))), all);
    EXPECT_EQ(inkOf(frameOf(drawing({{"DrawTime", 1.0}}))), all);
    EXPECT_TRUE(inkOf(frameOf(drawing({{"DrawTime", __int64{1}}}))).isEmpty());
}

TEST_F(RealCallout, AFrameShowsAMacSvgDoneByItsOwnEdge) {
    const auto drawing = [](const char* edge) {
        auto callout = calloutOf(
            {.kind = "MacSVG", .shape = "rectangle", .params = {{"Svg", lineSvg}, {"DrawTime", 1.0}}}, 300,
            300);
        callout->addEdgeModification({.name = edge, .duration = 2});
        return callout;
    };
    EXPECT_NEAR(inkOf(frameOf(drawing("Visual"))).right, 290, 1);
    EXPECT_TRUE(inkOf(frameOf(drawing("DrawPercentageFade"))).isEmpty());
}

TEST_F(RealCallout, AFrameIsNeverTurnedByTheNextOne) {
    MediaFrameGrabber grabber(calloutOf({.kind = "remix", .shape = "speech-bubble"}, 300, 250));
    const Frame upright = grabber.frameAtTime(0, true, {});
    const Ink before = inkOf(upright);
    const Frame turned = grabber.frameAtTime(0, false, {});
    EXPECT_NE(upright, turned);
    EXPECT_EQ(inkOf(upright), before);
    turned->FlipY();
    EXPECT_EQ(inkOf(turned), before);
}

TEST_F(RealCallout, TheLoaderDeliversWhatTheProducerMakes) {
    static Event arrived{EventReset::Automatic};
    static Picture delivered;
    const auto callout = calloutOf({.kind = "remix", .shape = "ellipse"}, 300, 200);
    {
        CalloutThumbnailLoader loader;
        loader.SetCallbacks([](const std::string&, Gdiplus::Bitmap** bitmap, const std::string&) {
            delivered.reset(std::exchange(*bitmap, nullptr));
            arrived.set();
        });
        loader.LoadThumbnailForCallout("ellipse", callout, 60, 60, "");
        arrived.wait();
    }
    const Picture shown = std::exchange(delivered, nullptr);
    const Picture made = thumbnailOf(callout, 60, 60);
    ASSERT_EQ(sizeOf(shown), (Size{60, 40}));
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 60; ++x)
            ASSERT_EQ(TestSupport::pixelOf(*shown, x, y), TestSupport::pixelOf(*made, x, y));
}

} // namespace KestoThumbnailer
