#include "KestoMediaLib/CalloutMedia.h"
#include "libs/KestoRenderLib/project/Composition.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

using namespace KestoMediaLib;
using namespace RenderTests;

namespace {

using Params = VectorDrawing::Params;

boost::shared_ptr<CalloutMedia> callout(const std::string& shape, int width, int height, const Params& params,
                                        const std::string& kind = "remix") {
    const auto media =
        boost::make_shared<CalloutMedia>(boost::make_shared<VectorDrawing>(kind, shape, "plain", params));
    media->setExtent({width * 1.0, height * 1.0});
    return lasting(media);
}

const Params solidRed = {{"FillColor", __int64{red}}, {"BorderWidth", 0.0}};
const Params redAroundGreen = {
    {"FillColor", __int64{green}}, {"BorderColor", __int64{red}}, {"BorderWidth", 1.0}};

template <class Change>
boost::shared_ptr<CalloutMedia> placed(boost::shared_ptr<CalloutMedia> media, const Change& change) {
    Placement placement = media->placement();
    change(placement);
    media->setPlacement(placement);
    return media;
}

/// The darkest and the brightest red of a row's stretch.
std::pair<unsigned, unsigned> redsBetween(const Frame& frame, int y, int left, int right) {
    unsigned darkest = 255;
    unsigned brightest = 0;
    for (int x = left; x < right; ++x) {
        const unsigned value = valueAt(frame, x, y) >> 16 & 255;
        darkest = std::min(darkest, value);
        brightest = std::max(brightest, value);
    }
    return {darkest, brightest};
}

int reddishInColumn(const Frame& frame, int x) {
    int count = 0;
    for (int y = 0; y < frame->GetHeight(); ++y)
        count += (valueAt(frame, x, y) >> 24) > 85 ? 1 : 0;
    return count;
}

int reddishInRow(const Frame& frame, int y) {
    int count = 0;
    for (int x = 0; x < frame->GetWidth(); ++x)
        count += (valueAt(frame, x, y) >> 24) > 85 ? 1 : 0;
    return count;
}

} // namespace

TEST(CalloutInAProject, LiesWhereItsPlacementSays) {
    Composition composition(8, 6);
    EXPECT_EQ(lettersOf(composition.add(at(1, -1, callout("rectangle", 4, 2, solidRed))).render()),
              "........\n"
              "...RRRR.\n"
              "...RRRR.\n"
              "........\n"
              "........\n"
              "........\n");
}

TEST(CalloutInAProject, LiesBetweenItsNeighbours) {
    Composition composition(6, 2);
    composition.add(colored(white, 6, 2)).add(callout("rectangle", 4, 2, solidRed)).add(colored(blue, 2, 2));
    EXPECT_EQ(lettersOf(composition.render()), "WRBBRW\nWRBBRW\n");
}

TEST(CalloutInAProject, IsDrawnAtTheScaleOfTheTimeline) {
    Composition composition(80, 80);
    composition.add(placed(callout("rectangle", 10, 10, redAroundGreen), [](Placement& placement) {
        placement.scale = {8, 8};
    }));
    const Frame frame = composition.render();
    EXPECT_EQ(valueAt(frame, 0, 40), red);
    EXPECT_EQ(valueAt(frame, 7, 40), red);
    EXPECT_EQ(valueAt(frame, 8, 40), green);
    EXPECT_EQ(valueAt(frame, 71, 40), green);
    EXPECT_EQ(valueAt(frame, 72, 40), red);
}

TEST(CalloutInAProject, TurnsWithItsPlacement) {
    Composition composition(100, 100);
    composition.add(placed(callout("arrow", 100, 40, {{"HeadSize", 30.0}}),
                           [](Placement& placement) { placement.rotation = 90; }));
    const Frame frame = composition.render();
    EXPECT_GT(reddishInRow(frame, 75), 2 * reddishInRow(frame, 30));
    EXPECT_EQ(reddishInColumn(frame, 10), 0);
}

TEST(CalloutInAProject, FadesWithItsPlacement) {
    Composition composition(4, 4);
    composition.add(
        placed(callout("rectangle", 4, 4, solidRed), [](Placement& placement) { placement.opacity = 0.5; }));
    EXPECT_EQ(valueAt(composition.render(), 2, 2), 0x80800000U);
}

TEST(CalloutInAProject, DrawsItselfFromItsOwnStartOn) {
    Composition composition(100, 20);
    const Params params = {{"DrawTime", __int64{1}}, {"StrokeWidth", 10.0}, {"LineCap", std::string("butt")}};
    composition.add(lasting(callout("line", 100, 20, params, "TypeWinSVG"), 20, 20));
    EXPECT_EQ(reddishInRow(composition.render(20), 10), 0);
    EXPECT_EQ(reddishInRow(composition.render(25), 10), 50);
    EXPECT_EQ(reddishInRow(composition.render(35), 10), 100);
}

TEST(CalloutInAProject, AHugeZoomStillShowsIt) {
    Composition composition(20, 20);
    composition.add(placed(callout("rectangle", 1000, 1000, solidRed), [](Placement& placement) {
        placement.scale = {100, 100};
    }));
    EXPECT_EQ(valueAt(composition.render(), 10, 10), red);
}

TEST(BlurBoxInAProject, BlursWhatLiesBelowItAndNothingElse) {
    Composition composition(60, 60);
    composition.add(colored(white, 60, 60)).add(at(-15, 0, colored(black, 30, 60)));
    composition.add(callout("blur-box", 40, 20, {{"BlurRadius", 12.0}}));
    const Frame frame = composition.render();
    EXPECT_EQ(valueAt(frame, 29, 5), black);
    EXPECT_EQ(valueAt(frame, 30, 5), white);
    EXPECT_EQ(valueAt(frame, 5, 30), black);
    const auto [darkest, brightest] = redsBetween(frame, 30, 28, 32);
    EXPECT_GT(darkest, 60U);
    EXPECT_LT(brightest, 200U);
    EXPECT_EQ(valueAt(frame, 30, 30) >> 24, 255U);
}

TEST(BlurBoxInAProject, WithoutARadiusOfItsOwnItHidesDetails) {
    Composition composition(64, 64);
    composition.add(colored(white, 64, 64));
    for (int stripe = -24; stripe <= 24; stripe += 8)
        composition.add(at(stripe, 0, colored(black, 4, 64)));
    composition.add(callout("blur-box", 64, 64, {}));
    const auto [darkest, brightest] = redsBetween(composition.render(), 32, 16, 48);
    EXPECT_LT(brightest - darkest, 100U);
}

TEST(BlurBoxInAProject, FadesWithItsPlacement) {
    Composition composition(60, 60);
    composition.add(colored(white, 60, 60)).add(at(-15, 0, colored(black, 30, 60)));
    composition.add(placed(callout("blur-box", 60, 60, {{"BlurRadius", 12.0}}),
                           [](Placement& placement) { placement.opacity = 0; }));
    EXPECT_EQ(valueAt(composition.render(), 29, 30), black);
}

TEST(BlurBoxInAProject, TurnsWithItsPlacement) {
    Composition composition(60, 60);
    composition.add(colored(white, 60, 60)).add(at(0, -15, colored(black, 60, 30)));
    composition.add(placed(callout("blur-box", 60, 10, {{"BlurRadius", 12.0}}),
                           [](Placement& placement) { placement.rotation = 90; }));
    const Frame frame = composition.render();
    EXPECT_EQ(valueAt(frame, 10, 29), black);
    EXPECT_NE(valueAt(frame, 30, 29), black);
}

TEST(BlurBoxInAProject, MayHaveABorder) {
    Composition composition(20, 20);
    composition.add(colored(white, 20, 20));
    composition.add(callout("blur-box", 20, 20, {{"BorderColor", __int64{red}}, {"BorderWidth", 2.0}}));
    EXPECT_EQ(valueAt(composition.render(), 1, 10), red);
    EXPECT_EQ(valueAt(composition.render(), 10, 10), white);
}

TEST(BlurBoxInAProject, OverNothingShowsNothing) {
    Composition composition(20, 20);
    EXPECT_EQ(valueAt(composition.add(callout("blur-box", 20, 20, {})).render(), 10, 10), 0U);
}

TEST(SpotlightInAProject, DarkensTheWholeCanvasAroundItsBox) {
    Composition composition(60, 40);
    composition.add(colored(white, 60, 40)).add(at(10, 0, callout("spotlight", 20, 20, {})));
    const Frame frame = composition.render();
    EXPECT_EQ(valueAt(frame, 40, 20), white);
    EXPECT_EQ(valueAt(frame, 33, 20), white);
    EXPECT_EQ(valueAt(frame, 0, 0), 0xFF666666U);
    EXPECT_EQ(valueAt(frame, 31, 11), 0xFF666666U) << "the hole is round";
}

TEST(SpotlightInAProject, BeyondTheCanvasEverythingIsDark) {
    Composition composition(10, 10);
    composition.add(colored(white, 10, 10)).add(at(500, 0, callout("spotlight", 20, 20, {})));
    EXPECT_EQ(valueAt(composition.render(), 9, 5), 0xFF666666U);
}

TEST(SpotlightInAProject, HasTheColorOfItsFill) {
    Composition composition(20, 20);
    composition.add(colored(white, 20, 20));
    composition.add(callout("spotlight", 10, 10, {{"FillColor", __int64{blue}}, {"CornerRadius", 0.0}}));
    const Frame frame = composition.render();
    EXPECT_EQ(valueAt(frame, 2, 2), blue);
    EXPECT_EQ(valueAt(frame, 5, 5), white);
}
