#include "KestoMediaLib/PlainMedia.h"
#include "KestoMediaLib/ProjectModel.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using boost::make_shared;
using KestoMediaLib::Clipping;
using KestoMediaLib::ColorMedia;
using KestoMediaLib::Media;
using KestoMediaLib::MixerModel;
using KestoMediaLib::PasteClippingCmd;
using KestoMediaLib::ProjectModel;
using KestoMediaLib::spanOf;
using KestoMediaLib::TrackModel;

using Medias = std::vector<boost::shared_ptr<const Media>>;

const boost::rational<unsigned long> rate(60);

/// Two tracks: blue from 100 to 110 below red from 105 to 125.
struct Source {
    Source() {
        add(blue, 100, 10);
        add(red, 105, 20);
    }

    void add(const boost::shared_ptr<ColorMedia>& media, __int64 start, __int64 duration) const {
        media->setSpan({.start = start, .duration = duration});
        const auto track = make_shared<TrackModel>();
        track->addMedia(media);
        mixer->addTrack(track);
    }

    boost::shared_ptr<const Clipping> clipping(const Medias& media) const {
        return boost::make_shared<Clipping>(mixer, rate, media, "");
    }

    boost::shared_ptr<MixerModel> mixer = make_shared<MixerModel>();
    boost::shared_ptr<ColorMedia> blue = make_shared<ColorMedia>(0xFF0000FFU);
    boost::shared_ptr<ColorMedia> red = make_shared<ColorMedia>(0xFFFF0000U);
};

boost::shared_ptr<ProjectModel> emptyProject() {
    return make_shared<ProjectModel>(rate);
}

void paste(const boost::shared_ptr<const Clipping>& clipping, const boost::shared_ptr<ProjectModel>& project,
           __int64 position, int track) {
    const auto command =
        PasteClippingCmd::create(clipping, project, project->timeline()->mixer(), position, track);
    project->commandInterface().executeCommand(command);
}

std::uint32_t colorOf(const boost::shared_ptr<const Media>& media) {
    return dynamic_cast<const ColorMedia&>(*media).color();
}

TEST(PasteClippingCmd, PutsACopyOnANewTrack) {
    const Source source;
    const auto project = emptyProject();
    paste(source.clipping({source.red}), project, 0, -1);
    const auto tracks = project->timeline()->mixer()->tracks();
    ASSERT_EQ(tracks.size(), 1U);
    ASSERT_EQ(tracks[0]->medias().size(), 1U);
    const auto pasted = tracks[0]->medias()[0];
    EXPECT_NE(pasted, source.red);
    EXPECT_EQ(colorOf(pasted), 0xFFFF0000U);
    EXPECT_EQ(spanOf(*pasted).start, 0);
    EXPECT_EQ(spanOf(*pasted).duration, 20);
    EXPECT_EQ(pasted->parentTrack().lock(), tracks[0]);
}

TEST(PasteClippingCmd, LeavesTheSourceAlone) {
    const Source source;
    paste(source.clipping({source.red}), emptyProject(), 7, -1);
    EXPECT_EQ(spanOf(*source.red).start, 105);
    EXPECT_EQ(source.red->parentTrack().lock(), source.mixer->tracks()[1]);
}

TEST(PasteClippingCmd, KeepsDistancesAndTheOrderOfTracks) {
    const Source source;
    const auto project = emptyProject();
    paste(source.clipping({source.red, source.blue}), project, 1000, -1);
    const auto tracks = project->timeline()->mixer()->tracks();
    ASSERT_EQ(tracks.size(), 2U);
    const auto lower = tracks[0]->medias()[0];
    const auto upper = tracks[1]->medias()[0];
    EXPECT_EQ(colorOf(lower), 0xFF0000FFU);
    EXPECT_EQ(spanOf(*lower).start, 1000);
    EXPECT_EQ(colorOf(upper), 0xFFFF0000U);
    EXPECT_EQ(spanOf(*upper).start, 1005);
}

TEST(PasteClippingCmd, NewTracksLieOnTop) {
    const Source source;
    const auto project = emptyProject();
    paste(source.clipping({source.red}), project, 0, -1);
    paste(source.clipping({source.blue}), project, 0, -1);
    const auto tracks = project->timeline()->mixer()->tracks();
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(colorOf(tracks[1]->medias()[0]), 0xFF0000FFU);
}

TEST(PasteClippingCmd, PutsAllOnOneTrackByItsNumber) {
    const Source source;
    const auto project = emptyProject();
    paste(source.clipping({source.red}), project, 0, -1);
    paste(source.clipping({source.red, source.blue}), project, 50, 0);
    const auto tracks = project->timeline()->mixer()->tracks();
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_EQ(tracks[0]->medias().size(), 3U);
}

TEST(PasteClippingCmd, AnEmptyClippingChangesNothing) {
    const auto project = emptyProject();
    paste(Source().clipping({}), project, 0, -1);
    EXPECT_TRUE(project->timeline()->mixer()->tracks().empty());
}

TEST(PasteClippingCmd, RefusesATrackThatIsNotThere) {
    const Source source;
    const auto project = emptyProject();
    EXPECT_THROW(paste(source.clipping({source.red}), project, 0, 0), std::invalid_argument);
    EXPECT_THROW(paste(source.clipping({source.red}), project, 0, -2), std::invalid_argument);
    EXPECT_TRUE(project->timeline()->mixer()->tracks().empty());
}

TEST(PasteClippingCmd, RefusesAMixerOfAnotherProject) {
    const Source source;
    const auto project = emptyProject();
    EXPECT_THROW(PasteClippingCmd::create(source.clipping({}), project, source.mixer, 0, -1),
                 std::invalid_argument);
    EXPECT_THROW(PasteClippingCmd::create(nullptr, project, project->timeline()->mixer(), 0, -1),
                 std::invalid_argument);
}

TEST(PasteClippingCmd, RefusesAPositionThatNoTimelineHas) {
    const Source source;
    const auto project = emptyProject();
    constexpr __int64 farthest = KestoMediaLib::longestModelTime;
    EXPECT_THROW(paste(source.clipping({source.red}), project, farthest + 1, -1), std::invalid_argument);
    EXPECT_THROW(paste(source.clipping({source.red, source.blue}), project, farthest, -1),
                 std::invalid_argument);
    EXPECT_TRUE(project->timeline()->mixer()->tracks().empty());
}

TEST(Clipping, RefusesEmptyPointers) {
    const Source source;
    EXPECT_THROW(Clipping(nullptr, rate, {}, ""), std::invalid_argument);
    EXPECT_THROW(Clipping(source.mixer, rate, {nullptr}, ""), std::invalid_argument);
}

} // namespace
