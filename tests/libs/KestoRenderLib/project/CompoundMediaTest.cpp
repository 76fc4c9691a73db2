#include "libs/KestoRenderLib/project/Composition.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>

using namespace KestoMediaLib;
using namespace RenderTests;

namespace {

boost::shared_ptr<GroupMedia> groupOf(std::initializer_list<boost::shared_ptr<Media>> media, int width,
                                      int height) {
    auto group = boost::make_shared<GroupMedia>();
    for (const auto& one : media) {
        auto track = boost::make_shared<TrackModel>();
        track->addMedia(one);
        group->addTrack(track);
    }
    group->setExtent({width * 1.0, height * 1.0});
    return lasting(group);
}

template <class Media>
boost::shared_ptr<Media> with(boost::shared_ptr<Media> media, const std::function<void(Placement&)>& set) {
    Placement placement = media->placement();
    set(placement);
    media->setPlacement(placement);
    return media;
}

boost::shared_ptr<UnifiedClip> unified(const boost::shared_ptr<VisualMedia>& visual) {
    return lasting(
        boost::make_shared<UnifiedClip>(boost::make_shared<AudioMedia>(SourceFile{"no.wav"}), visual));
}

/// A square of 2 by 2 in the upper left of a group of 4 by 4, and one in its lower right.
boost::shared_ptr<GroupMedia> twoSquares(std::uint32_t upper, std::uint32_t lower) {
    return groupOf({at(-1, -1, colored(upper, 2, 2)), at(1, 1, colored(lower, 2, 2))}, 4, 4);
}

} // namespace

TEST(RenderedGroup, MediaLieAsTheyDoInTheGroup) {
    Composition composition(6, 4);
    EXPECT_EQ(lettersOf(composition.add(at(1, 0, twoSquares(red, green))).render()), "..RR..\n"
                                                                                     "..RR..\n"
                                                                                     "....GG\n"
                                                                                     "....GG\n");
}

TEST(RenderedGroup, MediaAreScaledAndTurnedWithIt) {
    Composition composition(8, 8);
    const auto group = with(twoSquares(red, green), [](Placement& p) {
        p.scale = {2, 2};
        p.rotation = 90;
    });
    EXPECT_EQ(lettersOf(composition.add(group).render()), "....RRRR\n....RRRR\n....RRRR\n....RRRR\n"
                                                          "GGGG....\nGGGG....\nGGGG....\nGGGG....\n");
}

TEST(RenderedGroup, FadesAsAWhole) {
    Composition composition(4, 4);
    const auto group = groupOf({colored(red, 4, 4), colored(green, 4, 4)}, 4, 4);
    composition.add(colored(white, 4, 4)).add(with(group, [](Placement& p) { p.opacity = 0.5; }));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), 0xFF7FFF7F) << "no red shines through the green";
}

TEST(RenderedGroup, FadedMediaInAFadedGroupFadeTwice) {
    Composition composition(4, 4);
    const auto half = [](Placement& p) { p.opacity = 0.5; };
    composition.add(with(groupOf({with(colored(white, 4, 4), half)}, 4, 4), half));
    EXPECT_EQ(valueAt(composition.render(), 1, 1), 0x40404040U);
}

TEST(RenderedGroup, TimesInsideCountFromItsStart) {
    Composition composition(4, 4);
    const auto group =
        groupOf({lasting(colored(red, 4, 4), 0, 2), lasting(colored(green, 4, 4), 2, 2)}, 4, 4);
    composition.add(lasting(group, 10, 4));
    EXPECT_EQ(valueAt(composition.render(9), 1, 1), 0U);
    EXPECT_EQ(valueAt(composition.render(11), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(12), 1, 1), green);
}

TEST(RenderedGroup, ATrimmedGroupStartsLaterInside) {
    Composition composition(4, 4);
    const auto group =
        groupOf({lasting(colored(red, 4, 4), 0, 2), lasting(colored(green, 4, 4), 2, 2)}, 4, 4);
    group->setSpan({.start = 0, .duration = frames(2), .mediaStart = frames(2)});
    EXPECT_EQ(valueAt(composition.add(group).render(0), 1, 1), green);
}

TEST(RenderedGroup, AFastGroupRunsFastInside) {
    Composition composition(4, 4);
    const auto group =
        groupOf({lasting(colored(red, 4, 4), 0, 4), lasting(colored(green, 4, 4), 4, 4)}, 4, 4);
    group->setSpan({.start = 0, .duration = frames(4), .playRate = 2});
    composition.add(group);
    EXPECT_EQ(valueAt(composition.render(1), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(2), 1, 1), green);
}

TEST(RenderedGroup, GroupsNest) {
    Composition composition(8, 4);
    const auto inner = at(-1, 0, groupOf({at(-1, 0, colored(red, 2, 2))}, 4, 4));
    EXPECT_EQ(lettersOf(composition.add(groupOf({inner}, 6, 4)).render()), "........\n"
                                                                           ".RR.....\n"
                                                                           ".RR.....\n"
                                                                           "........\n");
}

TEST(RenderedGroup, ItsFrameCutsNothingOff) {
    Composition composition(6, 2);
    EXPECT_EQ(lettersOf(composition.add(groupOf({colored(red, 6, 2)}, 2, 2)).render()), "RRRRRR\nRRRRRR\n");
}

TEST(RenderedGroup, ItsCropsDo) {
    Composition composition(6, 2);
    const auto group = with(groupOf({colored(red, 6, 2)}, 4, 2), [](Placement& p) { p.cropLeft = 0.25; });
    EXPECT_EQ(lettersOf(composition.add(group).render()), "..RRR.\n..RRR.\n");
}

TEST(RenderedGroup, CropsTurnWithIt) {
    Composition composition(4, 4);
    const auto group = with(groupOf({colored(red, 4, 4)}, 4, 4), [](Placement& p) {
        p.cropLeft = 0.5;
        p.rotation = 90;
    });
    EXPECT_EQ(lettersOf(composition.add(group).render()), "....\n....\nRRRR\nRRRR\n");
}

TEST(RenderedGroup, GroupsTooDeepInEachOtherAreAHole) {
    boost::shared_ptr<Media> innermost = colored(red, 4, 4);
    for (int depth = 0; depth < 200; ++depth)
        innermost = groupOf({innermost}, 4, 4);
    Composition composition(4, 4);
    EXPECT_EQ(valueAt(composition.add(innermost).render(), 1, 1), 0U);
}

TEST(RenderedStitchedMedia, ShowsThePartOfTheMoment) {
    const auto stitched = boost::make_shared<StitchedClip>();
    stitched->append(lasting(colored(red, 4, 4), 0, 3));
    stitched->append(lasting(colored(green, 4, 4), 0, 3));
    stitched->setExtent({4, 4});
    Composition composition(4, 4);
    composition.add(lasting(stitched, 2, 6));
    EXPECT_EQ(valueAt(composition.render(4), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(5), 1, 1), green);
    EXPECT_EQ(valueAt(composition.render(8), 1, 1), 0U);
}

TEST(RenderedStitchedMedia, AGapShowsNothing) {
    const auto stitched = boost::make_shared<StitchedClip>();
    stitched->append(lasting(boost::make_shared<GapMedia>(), 0, 3));
    stitched->append(lasting(colored(green, 4, 4), 0, 3));
    stitched->setExtent({4, 4});
    Composition composition(4, 4);
    composition.add(lasting(stitched, 0, 6));
    EXPECT_EQ(valueAt(composition.render(2), 1, 1), 0U);
    EXPECT_EQ(valueAt(composition.render(3), 1, 1), green);
}

TEST(RenderedUnifiedMedia, ShowsItsVisualPart) {
    Composition composition(4, 4);
    EXPECT_EQ(valueAt(composition.add(unified(colored(red, 4, 4))).render(), 1, 1), red);
}

TEST(RenderedUnifiedMedia, LiesAndPlaysByItself) {
    const auto visual = at(100, 100, lasting(colored(red, 2, 2), 50, 1));
    Composition composition(6, 2);
    EXPECT_EQ(lettersOf(composition.add(at(2, 0, unified(visual))).render(9)), "....RR\n....RR\n");
}

TEST(RenderedSelection, OnlyListedMediaAreShown) {
    const auto chosen = at(1, 0, colored(green, 2, 2));
    Composition composition(4, 2);
    composition.add(colored(red, 4, 2)).add(chosen);
    composition.state().setMediaToRender({chosen});
    EXPECT_EQ(lettersOf(composition.render()), "..GG\n..GG\n");
}

TEST(RenderedSelection, AnEmptyListShowsEverything) {
    Composition composition(4, 2);
    composition.add(colored(red, 4, 2)).add(at(1, 0, colored(green, 2, 2)));
    composition.state().setMediaToRender({});
    EXPECT_EQ(lettersOf(composition.render()), "RRGG\nRRGG\n");
}

TEST(RenderedSelection, MediaCountByIdentity) {
    const auto shown = colored(red, 4, 2);
    Composition composition(4, 2);
    composition.add(shown);
    composition.state().setMediaToRender({boost::dynamic_pointer_cast<const Media>(shown->clone())});
    EXPECT_EQ(lettersOf(composition.render()), "....\n....\n");
}

TEST(RenderedSelection, AListedGroupIsShownWhole) {
    const auto group = twoSquares(red, green);
    Composition composition(4, 4);
    composition.add(colored(blue, 4, 4)).add(group);
    composition.state().setMediaToRender({group});
    EXPECT_EQ(lettersOf(composition.render()), "RR..\nRR..\n..GG\n..GG\n");
}

TEST(RenderedSelection, AListedMediaInAGroupIsShownWhereTheGroupPutsIt) {
    const auto chosen = at(1, 1, colored(green, 2, 2));
    const auto group = at(1, 0, groupOf({at(-1, -1, colored(red, 2, 2)), chosen}, 4, 4));
    Composition composition(6, 4);
    composition.add(group);
    composition.state().setMediaToRender({chosen});
    EXPECT_EQ(lettersOf(composition.render()), "......\n......\n....GG\n....GG\n");
}

TEST(RenderedSelection, AListedVisualPartIsShown) {
    const auto visual = colored(red, 4, 2);
    Composition composition(4, 2);
    composition.add(unified(visual));
    composition.state().setMediaToRender({visual});
    EXPECT_EQ(lettersOf(composition.render()), "RRRR\nRRRR\n");
}

TEST(RenderedSelection, AListedVisualPartThatIsAGroupIsShownWhole) {
    const auto group = twoSquares(red, green);
    Composition composition(4, 4);
    composition.add(unified(group));
    composition.state().setMediaToRender({group});
    EXPECT_EQ(lettersOf(composition.render()), "RR..\nRR..\n..GG\n..GG\n");
}

TEST(RenderedSelection, MediaOfAnotherProjectShowNothing) {
    Composition composition(4, 2);
    composition.add(colored(red, 4, 2));
    composition.state().setMediaToRender({colored(red, 4, 2)});
    EXPECT_EQ(lettersOf(composition.render()), "....\n....\n");
}
