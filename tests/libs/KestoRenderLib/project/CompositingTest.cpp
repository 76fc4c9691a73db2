#include "libs/KestoRenderLib/project/Composition.h"

#include <gtest/gtest.h>

using namespace KestoMediaLib;
using namespace RenderTests;

namespace {

template <class Media>
boost::shared_ptr<Media> faded(double opacity, boost::shared_ptr<Media> media) {
    Placement placement = media->placement();
    placement.opacity = opacity;
    media->setPlacement(placement);
    return media;
}

} // namespace

TEST(Compositing, NothingIsTransparent) {
    Composition composition(3, 2);
    EXPECT_EQ(lettersOf(composition.render()), "...\n...\n");
}

TEST(Compositing, TheFirstTrackLiesAtTheBottom) {
    Composition composition(4, 2);
    composition.add(colored(red, 4, 2)).add(at(1, 0, colored(green, 2, 2)));
    EXPECT_EQ(lettersOf(composition.render()), "RRGG\nRRGG\n");
}

TEST(Compositing, LaterMediaOfATrackLieAbove) {
    Composition composition(4, 2);
    const auto track = composition.addTrack();
    track->addMedia(colored(red, 4, 2));
    track->addMedia(at(1, 0, colored(green, 2, 2)));
    EXPECT_EQ(lettersOf(composition.render()), "RRGG\nRRGG\n");
}

TEST(Compositing, HalfOpaqueMediaMixWithWhatLiesBelow) {
    Composition composition(4, 2);
    composition.add(colored(white, 4, 2)).add(faded(0.5, colored(red, 4, 2)));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), 0xFFFF7F7F); // 255 / 2 is 128, of white 127 are left
}

TEST(Compositing, ColorsThatShineThroughMixWithWhatLiesBelow) {
    Composition composition(4, 2);
    composition.add(colored(white, 4, 2)).add(colored(0x40FF0000, 4, 2));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), 0xFFFFBFBF);
}

TEST(Compositing, OverNothingOpacityBecomesAlpha) {
    Composition composition(4, 2);
    composition.add(faded(0.5, colored(red, 4, 2)));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), 0x80800000);
}

TEST(Compositing, WhatIsNotOpaqueAtAllIsNotShown) {
    Composition composition(4, 2);
    composition.add(faded(0, colored(red, 4, 2)));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), 0U);
}

TEST(Compositing, OpacityCanBeAnimated) {
    Composition composition(4, 2);
    const auto media = colored(white, 4, 2);
    Placement placement;
    placement.opacity = KeyFramedParam({{.time = 0, .value = 0}, {.time = 1, .value = 1}});
    media->setPlacement(placement);
    composition.add(media);
    EXPECT_EQ(valueAt(composition.render(4), 1, 1), 0x66666666U);
}

TEST(Compositing, TurnedMediaAreFadedToo) {
    Composition composition(4, 4);
    const auto media = faded(0.5, colored(red, 4, 4));
    Placement placement = media->placement();
    placement.rotation = 90;
    media->setPlacement(placement);
    composition.add(colored(white, 4, 4)).add(media);
    const std::uint32_t value = valueAt(composition.render(), 1, 1);
    EXPECT_NEAR(value >> 8 & 255, 127, 1);
    EXPECT_EQ(value >> 16, 0xFFFFU);
}

TEST(Compositing, AFrameThatSomebodyHoldsIsNotDrawnOver) {
    Composition composition(4, 2);
    composition.add(lasting(at(1, 0, colored(red, 2, 2)), 0, 1))
        .add(lasting(at(1, 0, colored(blue, 2, 2)), 1, 1));
    const Frame first = composition.render(0);
    composition.render(1);
    EXPECT_EQ(lettersOf(first), "..RR\n..RR\n");
}

TEST(Compositing, AFrameLeavesNothingBehindForTheNext) {
    Composition composition(4, 2);
    composition.add(lasting(at(1, 0, colored(red, 2, 2)), 0, 1))
        .add(lasting(at(-1, 0, colored(blue, 2, 2)), 1, 1));
    composition.render(0);
    EXPECT_EQ(lettersOf(composition.render(1)), "BB..\nBB..\n");
}
