#include "KestoMediaLib/CompoundMedia.h"
#include "KestoMediaLib/FileMedia.h"
#include "KestoMediaLib/PlainMedia.h"
#include "KestoMediaLib/ProjectModel.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using boost::make_shared;
using KestoMediaLib::AudioMedia;
using KestoMediaLib::ColorMedia;
using KestoMediaLib::GapMedia;
using KestoMediaLib::GroupMedia;
using KestoMediaLib::MediaSpan;
using KestoMediaLib::SourceFile;
using KestoMediaLib::spanOf;
using KestoMediaLib::StitchedClip;
using KestoMediaLib::TrackModel;
using KestoMediaLib::UnifiedClip;
using KestoMediaLib::VideoClip;

boost::shared_ptr<ColorMedia> colorLasting(__int64 duration) {
    auto media = make_shared<ColorMedia>(0xFF00FF00);
    media->setSpan({.start = 999, .duration = duration, .mediaStart = 5});
    return media;
}

boost::shared_ptr<AudioMedia> sound() {
    return make_shared<AudioMedia>(SourceFile{"sound.wav", 0});
}

TEST(StitchedClip, PartsPlayOneAfterTheOther) {
    StitchedClip clip;
    clip.append(colorLasting(10));
    clip.append(colorLasting(20));
    clip.append(colorLasting(30));
    const auto parts = clip.medias();
    ASSERT_EQ(parts.size(), 3U);
    EXPECT_EQ(spanOf(*parts[0]).start, 0);
    EXPECT_EQ(spanOf(*parts[1]).start, 10);
    EXPECT_EQ(spanOf(*parts[2]).start, 30);
}

TEST(StitchedClip, PartsKeepTheirTrim) {
    StitchedClip clip;
    clip.append(colorLasting(10));
    EXPECT_EQ(spanOf(*clip.medias()[0]).mediaStart, 5);
    EXPECT_EQ(spanOf(*clip.medias()[0]).duration, 10);
}

TEST(StitchedClip, HasNoVideoWithoutAPartToSee) {
    StitchedClip clip;
    EXPECT_FALSE(clip.hasVideo());
    clip.append(sound());
    clip.append(make_shared<GapMedia>());
    clip.append(make_shared<StitchedClip>());
    EXPECT_FALSE(clip.hasVideo());
}

TEST(StitchedClip, HasVideoWithOnePartToSee) {
    auto inner = make_shared<StitchedClip>();
    inner->append(colorLasting(1));
    StitchedClip clip;
    clip.append(sound());
    clip.append(inner);
    EXPECT_TRUE(clip.hasVideo());
}

TEST(StitchedClip, RefusesItself) {
    auto clip = make_shared<StitchedClip>();
    EXPECT_THROW(clip->append(clip), std::invalid_argument);
    EXPECT_TRUE(clip->medias().empty());
}

TEST(StitchedClip, RefusesAClipThatHoldsIt) {
    auto outer = make_shared<StitchedClip>();
    auto between = make_shared<StitchedClip>();
    auto inner = make_shared<StitchedClip>();
    between->append(inner);
    outer->append(between);
    EXPECT_THROW(inner->append(outer), std::invalid_argument);
}

TEST(StitchedClip, RefusesMediaThatSomethingHolds) {
    StitchedClip clip;
    const auto part = colorLasting(1);
    clip.append(part);
    EXPECT_THROW(clip.append(part), std::invalid_argument);
    EXPECT_THROW(clip.append(nullptr), std::invalid_argument);
    const auto onTrack = colorLasting(1);
    const auto track = make_shared<TrackModel>();
    track->addMedia(onTrack);
    EXPECT_THROW(clip.append(onTrack), std::invalid_argument);
}

TEST(StitchedClip, ACopyHasCopiesOfTheParts) {
    auto clip = make_shared<StitchedClip>();
    const auto part = colorLasting(10);
    clip->append(part);
    const auto copy = boost::dynamic_pointer_cast<StitchedClip>(clip->clone());
    ASSERT_EQ(copy->medias().size(), 1U);
    EXPECT_NE(copy->medias()[0], part);
    copy->append(colorLasting(1));
    EXPECT_EQ(clip->medias().size(), 1U);
}

TEST(UnifiedClip, GivesItsPartsToTheFunction) {
    const auto audio = sound();
    const auto visual = colorLasting(3);
    const UnifiedClip clip(audio, visual);
    int calls = 0;
    clip.accessInternals([&](const auto& heard, const auto& seen) {
        ++calls;
        EXPECT_EQ(heard, audio);
        EXPECT_EQ(seen, visual);
    });
    EXPECT_EQ(calls, 1);
}

TEST(UnifiedClip, HasTheExtentOfItsVisualPart) {
    const auto visual = colorLasting(3);
    visual->setExtent({640, 480});
    const UnifiedClip clip(sound(), visual);
    EXPECT_EQ(clip.width(0), 640.0F);
    EXPECT_EQ(clip.height(0), 480.0F);
}

TEST(UnifiedClip, RefusesAMissingPart) {
    EXPECT_THROW(UnifiedClip(nullptr, colorLasting(1)), std::invalid_argument);
    EXPECT_THROW(UnifiedClip(sound(), nullptr), std::invalid_argument);
}

TEST(UnifiedClip, RefusesOneMediaAsBothParts) {
    const auto media = colorLasting(1);
    EXPECT_THROW(UnifiedClip(media, media), std::invalid_argument);
}

TEST(GroupMedia, TracksStandInTheirOrder) {
    GroupMedia group;
    const auto lower = make_shared<TrackModel>();
    const auto upper = make_shared<TrackModel>();
    group.addTrack(lower);
    group.addTrack(upper);
    EXPECT_EQ(group.tracks(), (std::vector<boost::shared_ptr<TrackModel>>{lower, upper}));
}

TEST(GroupMedia, RefusesATrackThatHoldsIt) {
    auto group = make_shared<GroupMedia>();
    auto between = make_shared<StitchedClip>();
    between->append(group);
    auto track = make_shared<TrackModel>();
    track->addMedia(between);
    EXPECT_THROW(group->addTrack(track), std::invalid_argument);
}

TEST(GroupMedia, RefusesATrackTwice) {
    GroupMedia group;
    const auto track = make_shared<TrackModel>();
    group.addTrack(track);
    EXPECT_THROW(group.addTrack(track), std::invalid_argument);
    EXPECT_THROW(KestoMediaLib::MixerModel().addTrack(track), std::invalid_argument);
}

TEST(GroupMedia, ACopyHasCopiesOfItsTracks) {
    auto group = make_shared<GroupMedia>();
    auto track = make_shared<TrackModel>();
    track->addMedia(colorLasting(8));
    track->setHidden(true);
    group->addTrack(track);
    const auto copy = boost::dynamic_pointer_cast<GroupMedia>(group->clone());
    ASSERT_EQ(copy->tracks().size(), 1U);
    EXPECT_NE(copy->tracks()[0], track);
    EXPECT_TRUE(copy->tracks()[0]->hidden());
    EXPECT_EQ(spanOf(*copy->tracks()[0]->medias()[0]).duration, 8);
}

TEST(CompoundMedia, InnerMediaAreFoundHoweverDeep) {
    const auto deep = colorLasting(1);
    auto track = make_shared<TrackModel>();
    track->addMedia(deep);
    auto group = make_shared<GroupMedia>();
    group->addTrack(track);
    auto stitched = make_shared<StitchedClip>();
    stitched->append(make_shared<UnifiedClip>(sound(), group));
    EXPECT_TRUE(KestoMediaLib::holds(*stitched, *deep));
    EXPECT_FALSE(KestoMediaLib::holds(*group, *stitched));
}

} // namespace
