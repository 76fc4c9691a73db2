#include "KestoMediaLib/ProjectModel.h"
#include "KestoMediaLib/PlainMedia.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using boost::make_shared;
using KestoMediaLib::ColorMedia;
using KestoMediaLib::endOfProject;
using KestoMediaLib::MixerModel;
using KestoMediaLib::ProjectModel;
using KestoMediaLib::SimpleProject;
using KestoMediaLib::TrackModel;

using Rate = boost::rational<unsigned long>;

boost::shared_ptr<ColorMedia> colorAt(__int64 start, __int64 duration) {
    auto media = make_shared<ColorMedia>(0U);
    media->setSpan({.start = start, .duration = duration});
    return media;
}

TEST(SimpleProject, HasTheFrameRateAndCanvasItWasGiven) {
    SimpleProject simple(Rate(30000, 1001));
    simple.setCanvasWidth(1280);
    simple.setCanvasHeight(720.5);
    const auto project = simple.project();
    EXPECT_EQ(project->frameRate(), Rate(30000, 1001));
    EXPECT_EQ(project->timeline()->attributeWidth()->value(), 1280.0F);
    EXPECT_EQ(project->timeline()->attributeHeight()->value(), 720.5F);
    EXPECT_TRUE(project->timeline()->mixer()->tracks().empty());
}

TEST(SimpleProject, CopiesShareTheProject) {
    SimpleProject simple(Rate(60));
    const SimpleProject copy = simple;
    simple.setCanvasWidth(40);
    EXPECT_EQ(copy.project(), simple.project());
    EXPECT_EQ(copy.project()->timeline()->attributeWidth()->value(), 40.0F);
}

TEST(ProjectModel, RefusesAFrameRateOfZero) {
    EXPECT_THROW(ProjectModel(Rate(0)), std::invalid_argument);
}

TEST(ProjectModel, RefusesAnEmptyCommand) {
    EXPECT_THROW(ProjectModel(Rate(30)).commandInterface().executeCommand(nullptr), std::invalid_argument);
}

TEST(ProjectModel, EndsWithItsLastMedia) {
    const ProjectModel project(Rate(30));
    EXPECT_EQ(endOfProject(project), 0);
    for (const auto& [start, duration] : {std::pair<__int64, __int64>{0, 50}, {20, 10}}) {
        const auto track = make_shared<TrackModel>();
        track->addMedia(colorAt(start, duration));
        project.editableTimeline()->editableMixer()->addTrack(track);
    }
    EXPECT_EQ(endOfProject(project), 50);
}

TEST(TrackModel, MediaKnowTheirTrackAndTracksTheirMixer) {
    const auto media = colorAt(0, 1);
    EXPECT_FALSE(media->parentTrack().lock());
    const auto track = make_shared<TrackModel>();
    track->addMedia(media);
    EXPECT_EQ(media->parentTrack().lock(), track);
    EXPECT_FALSE(track->parentMixer().lock());
    const auto mixer = make_shared<MixerModel>();
    mixer->addTrack(track);
    EXPECT_EQ(track->parentMixer().lock(), mixer);
}

TEST(TrackModel, MediaOutliveTheirTrack) {
    const auto media = colorAt(0, 1);
    {
        const auto track = make_shared<TrackModel>();
        track->addMedia(media);
    }
    EXPECT_FALSE(media->parentTrack().lock());
}

TEST(TrackModel, KeepsMediaInTheOrderInWhichTheyCame) {
    const auto track = make_shared<TrackModel>();
    const auto first = colorAt(5, 1);
    const auto second = colorAt(0, 1);
    track->addMedia(first);
    track->addMedia(second);
    ASSERT_EQ(track->medias().size(), 2U);
    EXPECT_EQ(track->medias()[0], first);
    EXPECT_EQ(track->medias()[1], second);
}

TEST(TrackModel, RefusesMediaOfAnotherTrack) {
    const auto media = colorAt(0, 1);
    make_shared<TrackModel>()->addMedia(media);
    EXPECT_THROW(make_shared<TrackModel>()->addMedia(media), std::invalid_argument);
    EXPECT_THROW(make_shared<TrackModel>()->addMedia(nullptr), std::invalid_argument);
}

TEST(MixerModel, RefusesATrackOfAnotherMixer) {
    const auto mixer = make_shared<MixerModel>();
    const auto track = make_shared<TrackModel>();
    mixer->addTrack(track);
    EXPECT_THROW(mixer->addTrack(track), std::invalid_argument);
    EXPECT_THROW(make_shared<MixerModel>()->addTrack(track), std::invalid_argument);
    EXPECT_THROW(mixer->addTrack(nullptr), std::invalid_argument);
}

} // namespace
