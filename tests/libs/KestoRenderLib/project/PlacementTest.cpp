#include "libs/KestoRenderLib/project/Composition.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <utility>

using namespace KestoMediaLib;
using namespace RenderTests;

namespace {

/// A media of that look, placed as told, alone on a canvas of 8 by 6.
Frame renderedAlone(const boost::shared_ptr<ColorMedia>& media, const Placement& placement, int frame = 0) {
    media->setPlacement(placement);
    Composition composition(8, 6);
    return composition.add(media).render(frame);
}

Placement with(const std::function<void(Placement&)>& set) {
    Placement placement;
    set(placement);
    return placement;
}

/// Red above green above blue, each 4 by 2.
boost::shared_ptr<GroupMedia> flag() {
    auto group = boost::make_shared<GroupMedia>();
    for (const auto& [color, y] : {std::pair(red, -2), std::pair(green, 0), std::pair(blue, 2)}) {
        auto track = boost::make_shared<TrackModel>();
        track->addMedia(at(0, y, colored(color, 4, 2)));
        group->addTrack(track);
    }
    group->setExtent({4, 6});
    return lasting(group);
}

} // namespace

TEST(RenderedPlacement, AMediaLiesInTheMiddleOfTheCanvasAtFirst) {
    EXPECT_EQ(lettersOf(renderedAlone(colored(red, 4, 2), {})), "........\n"
                                                                "........\n"
                                                                "..RRRR..\n"
                                                                "..RRRR..\n"
                                                                "........\n"
                                                                "........\n");
}

TEST(RenderedPlacement, PositionsCountToTheRightAndDownwards) {
    EXPECT_EQ(lettersOf(renderedAlone(colored(red, 4, 2), with([](Placement& p) {
                                          p.position = {2, 1};
                                      }))),
              "........\n"
              "........\n"
              "........\n"
              "....RRRR\n"
              "....RRRR\n"
              "........\n");
}

TEST(RenderedPlacement, WhatReachesBeyondTheCanvasIsCutOff) {
    EXPECT_EQ(lettersOf(renderedAlone(colored(red, 4, 2), with([](Placement& p) {
                                          p.position = {-4, -3};
                                      }))),
              "RR......\n"
              "........\n"
              "........\n"
              "........\n"
              "........\n"
              "........\n");
}

TEST(RenderedPlacement, TheAnchorIsWhatLiesOnThePosition) {
    EXPECT_EQ(lettersOf(renderedAlone(colored(red, 4, 2), with([](Placement& p) {
                                          p.anchor = {0, 0};
                                      }))),
              "........\n"
              "........\n"
              "........\n"
              "....RRRR\n"
              "....RRRR\n"
              "........\n");
}

TEST(RenderedPlacement, ScalingKeepsTheAnchorInPlace) {
    EXPECT_EQ(lettersOf(renderedAlone(colored(red, 2, 1), with([](Placement& p) {
                                          p.scale = {2, 3};
                                          p.anchor = {0, 1};
                                      }))),
              "....RRRR\n"
              "....RRRR\n"
              "....RRRR\n"
              "........\n"
              "........\n"
              "........\n");
}

TEST(RenderedPlacement, CropsCutOffWithoutMovingTheRest) {
    EXPECT_EQ(lettersOf(renderedAlone(colored(red, 4, 4), with([](Placement& p) {
                                          p.cropLeft = 0.25;
                                          p.cropBottom = 0.5;
                                      }))),
              "........\n"
              "...RRR..\n"
              "...RRR..\n"
              "........\n"
              "........\n"
              "........\n");
}

TEST(RenderedPlacement, CropsThatLeaveNothingShowNothing) {
    const Frame frame = renderedAlone(colored(red, 4, 4), with([](Placement& p) {
                                          p.cropLeft = 0.5;
                                          p.cropRight = 0.5;
                                      }));
    EXPECT_EQ(lettersOf(frame).find_first_not_of(".\n"), std::string::npos);
}

TEST(RenderedPlacement, AQuarterTurnIsClockwise) {
    const auto media = flag();
    media->setPlacement(with([](Placement& p) { p.rotation = 90; }));
    Composition composition(8, 6);
    EXPECT_EQ(lettersOf(composition.add(media).render()), "........\n"
                                                          ".BBGGRR.\n"
                                                          ".BBGGRR.\n"
                                                          ".BBGGRR.\n"
                                                          ".BBGGRR.\n"
                                                          "........\n");
}

TEST(RenderedPlacement, AHalfTurnPutsTheBottomOnTop) {
    const auto media = flag();
    media->setPlacement(with([](Placement& p) { p.rotation = 180; }));
    Composition composition(8, 6);
    EXPECT_EQ(lettersOf(composition.add(media).render()), "..BBBB..\n"
                                                          "..BBBB..\n"
                                                          "..GGGG..\n"
                                                          "..GGGG..\n"
                                                          "..RRRR..\n"
                                                          "..RRRR..\n");
}

TEST(RenderedPlacement, NegativeScalesMirror) {
    const auto media = flag();
    media->setPlacement(with([](Placement& p) { p.scale = {1, -1}; }));
    Composition composition(8, 6);
    EXPECT_EQ(lettersOf(composition.add(media).render()), "..BBBB..\n"
                                                          "..BBBB..\n"
                                                          "..GGGG..\n"
                                                          "..GGGG..\n"
                                                          "..RRRR..\n"
                                                          "..RRRR..\n");
}

TEST(RenderedPlacement, EdgesBetweenPixelsAreSmooth) {
    const Frame frame = renderedAlone(colored(white, 4, 2), with([](Placement& p) {
                                          p.position = {0.25, -0.75};
                                      }));
    // It lies from 2.25 to 6.25 and from 1.25 to 3.25.
    const auto alphaAt = [&](int x, int y) { return valueAt(frame, x, y) >> 24; };
    EXPECT_EQ(alphaAt(1, 2), 0U);
    EXPECT_EQ(alphaAt(2, 2), 191U);
    EXPECT_EQ(alphaAt(3, 2), 255U);
    EXPECT_EQ(alphaAt(5, 2), 255U);
    EXPECT_EQ(alphaAt(6, 2), 64U);
    EXPECT_EQ(alphaAt(7, 2), 0U);
    EXPECT_EQ(alphaAt(4, 0), 0U);
    EXPECT_EQ(alphaAt(4, 1), 191U);
    EXPECT_EQ(alphaAt(4, 3), 64U);
    EXPECT_EQ(alphaAt(4, 4), 0U);
    EXPECT_EQ(alphaAt(6, 3), 16U);
}

TEST(RenderedPlacement, SmoothEdgesAreFadedToo) {
    const Frame frame = renderedAlone(colored(white, 4, 2), with([](Placement& p) {
                                          p.position = {0.5, 0};
                                          p.opacity = 0.5;
                                      }));
    EXPECT_EQ(valueAt(frame, 2, 2), 0x40404040U);
    EXPECT_EQ(valueAt(frame, 4, 2), 0x80808080U);
    EXPECT_EQ(valueAt(frame, 6, 2), 0x40404040U);
}

TEST(RenderedPlacement, WhatIsThinnerThanAPixelIsFaint) {
    const Frame frame = renderedAlone(colored(white, 4, 2), with([](Placement& p) {
                                          p.position = {0, 0.2};
                                          p.scale = {1, 0.1};
                                      }));
    EXPECT_NEAR(valueAt(frame, 4, 3) >> 24, 51, 6);
}

TEST(RenderedPlacement, ATurnByHalfARightAngleMakesADiamond) {
    const Frame frame = renderedAlone(colored(white, 4, 4), with([](Placement& p) { p.rotation = 45; }));
    EXPECT_EQ(valueAt(frame, 4, 3), white);
    // Its tips lie 2.83 from the middle, so that of these pixels a triangle of 0.83 by 0.83 is covered.
    EXPECT_NEAR(valueAt(frame, 2, 1) >> 24, 88, 12) << "the corner of the unturned square";
    EXPECT_NEAR(valueAt(frame, 1, 3) >> 24, 88, 12) << "beside the tip";
    EXPECT_EQ(valueAt(frame, 0, 0), 0U);
}

TEST(RenderedPlacement, AValueBetweenTwoKeyFramesIsOnItsWay) {
    const KeyFramedParam moving({{.time = 0, .value = -2}, {.time = 1, .value = 2}});
    const auto media = colored(red, 4, 6);
    EXPECT_EQ(lettersOf(renderedAlone(media, with([&](Placement& p) {
                                          p.position = {moving, 0};
                                      }),
                                      0))
                  .substr(0, 8),
              "RRRR....");
    EXPECT_EQ(lettersOf(renderedAlone(colored(red, 4, 6), with([&](Placement& p) {
                                          p.position = {moving, 0};
                                      }),
                                      5))
                  .substr(0, 8),
              "..RRRR..");
}

TEST(RenderedPlacement, EasingBendsTheWay) {
    const KeyFramedParam moving(
        {{.time = 0, .value = -2, .easing = Easing::EaseIn}, {.time = 1, .value = 2}});
    EXPECT_EQ(lettersOf(renderedAlone(colored(red, 4, 6), with([&](Placement& p) {
                                          p.position = {moving, 0};
                                      }),
                                      5))
                  .substr(0, 8),
              ".RRRR...");
}

TEST(RenderedPlacement, AnimationsCountFromTheMediasStart) {
    const KeyFramedParam moving({{.time = 0, .value = -2}, {.time = 1, .value = 2}});
    const auto media = lasting(colored(red, 4, 6), 20, 10);
    EXPECT_EQ(lettersOf(renderedAlone(media, with([&](Placement& p) {
                                          p.position = {moving, 0};
                                      }),
                                      25))
                  .substr(0, 8),
              "..RRRR..");
}

TEST(RenderedPlacement, AnOddCanvasIsFilledExactly) {
    Composition composition(5, 3);
    EXPECT_EQ(lettersOf(composition.add(colored(red, 5, 3)).render()), "RRRRR\nRRRRR\nRRRRR\n");
}

TEST(RenderedPlacement, APlacementThatIsNoNumberShowsNothing) {
    const double nothing = std::numeric_limits<double>::quiet_NaN();
    const Frame frame = renderedAlone(colored(red, 4, 4), with([&](Placement& p) {
                                          p.position = {nothing, 0};
                                      }));
    EXPECT_EQ(lettersOf(frame).find_first_not_of(".\n"), std::string::npos);
}

TEST(RenderedPlacement, AnEndlessScaleShowsNothing) {
    const Frame frame = renderedAlone(colored(red, 4, 4), with([](Placement& p) {
                                          p.scale = {std::numeric_limits<double>::infinity(), 1};
                                      }));
    EXPECT_EQ(lettersOf(frame).find_first_not_of(".\n"), std::string::npos);
}
