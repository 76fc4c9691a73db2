#include "libs/KestoRenderLib/project/Composition.h"

#include <gtest/gtest.h>

using namespace RenderTests;

TEST(RenderedTime, AMediaIsShownFromItsStart) {
    Composition composition(4, 4);
    composition.add(lasting(colored(red, 4, 4), 3, 2));
    EXPECT_EQ(valueAt(composition.render(2), 1, 1), 0U);
    EXPECT_EQ(valueAt(composition.render(3), 1, 1), red);
}

TEST(RenderedTime, AMediaIsGoneAtItsEnd) {
    Composition composition(4, 4);
    composition.add(lasting(colored(red, 4, 4), 3, 2));
    EXPECT_EQ(valueAt(composition.render(4), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(5), 1, 1), 0U);
}

TEST(RenderedTime, OneMediaFollowsAnotherOnATrack) {
    Composition composition(4, 4);
    const auto track = composition.addTrack();
    track->addMedia(lasting(colored(red, 4, 4), 0, 3));
    track->addMedia(lasting(colored(green, 4, 4), 3, 3));
    EXPECT_EQ(valueAt(composition.render(2), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(3), 1, 1), green);
}

TEST(RenderedTime, AMediaThatStartsBetweenTwoFramesShowsInTheLaterOne) {
    Composition composition(4, 4);
    const auto media = colored(red, 4, 4);
    media->setSpan({.start = frames(3) - 1, .duration = frames(2)});
    composition.add(media);
    EXPECT_EQ(valueAt(composition.render(2), 1, 1), 0U);
    EXPECT_EQ(valueAt(composition.render(3), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(4), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(5), 1, 1), 0U);
}

TEST(RenderedTime, FramesBeforeTheStartShowTheBackgroundAlone) {
    Composition composition(4, 4);
    const auto media = colored(red, 4, 4);
    media->setSpan({.start = frames(-5), .duration = frames(20)});
    composition.add(media);
    EXPECT_EQ(lettersOf(composition.render(-1)), "....\n....\n....\n....\n");
}

TEST(RenderedTime, FramesAfterTheEndShowTheBackgroundAlone) {
    Composition composition(4, 4);
    composition.add(colored(red, 4, 4));
    EXPECT_EQ(lettersOf(composition.render(1'000'000'000'000'000)), "....\n....\n....\n....\n");
}

TEST(RenderedTime, AHiddenTrackShowsNothing) {
    Composition composition(4, 4);
    const auto track = composition.addTrack();
    track->addMedia(colored(red, 4, 4));
    track->setHidden(true);
    EXPECT_EQ(valueAt(composition.render(), 1, 1), 0U);
}

TEST(RenderedTime, EarlierFramesCanBeRenderedAfterLaterOnes) {
    Composition composition(4, 4);
    composition.add(lasting(colored(red, 4, 4), 0, 2)).add(lasting(colored(blue, 4, 4), 5, 2));
    EXPECT_EQ(valueAt(composition.render(6), 1, 1), blue);
    EXPECT_EQ(valueAt(composition.render(0), 1, 1), red);
}
