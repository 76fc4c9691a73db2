#include "KestoMediaLib/CalloutMedia.h"
#include "KestoMediaLib/CompoundMedia.h"
#include "KestoMediaLib/FileMedia.h"
#include "KestoMediaLib/PlainMedia.h"
#include "platform/KestoMediaModel.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <string>

namespace {

using boost::make_shared;
using namespace KestoMediaLib; // NOLINT(google-build-using-namespace): every class of the model is named here
using KestoMediaLibUtl::ConvertMedia;

/// Leaves the two operations alone that need not be handled.
class Recorder : public ConstMediaDispatcher {
public:
    std::string visited;

    void visitStitched(const StitchedMedia&) override { visited += "stitched"; }
    void visitAudio(const AudioMedia&) override { visited += "audio"; }
    void visitUnified(const UnifiedMedia&) override { visited += "unified"; }
    void visitColor(const ColorMedia&) override { visited += "color"; }
    void visitVideo(const VideoFileMedia& media) override { visited += "video " + media.fileName(); }
    void visitScreenRecording(const VideoFileMedia& media) override {
        visited += "recording " + media.fileName();
    }
    void visitImage(const ImageFileMedia& media) override { visited += "image " + media.fileName(); }
    void visitAnimatedGif(const ImageFileMedia& media) override { visited += "gif " + media.fileName(); }
    void visitDocument(const DocumentMedia&) override { visited += "document"; }
    void visitFreezeFrame(const FreezeFrameMedia&) override { visited += "freeze frame"; }
    void visitCallout(const Callout&) override { visited += "callout"; }
    void visitGroup(const GroupMedia&) override { visited += "group"; }
};

std::string visitedBy(const Media& media) {
    Recorder recorder;
    media.accept(recorder);
    return recorder.visited;
}

TEST(MediaDispatcher, EachClassCallsItsOwnOperation) {
    const SourceFile file{"f", 1};
    EXPECT_EQ(visitedBy(StitchedClip()), "stitched");
    EXPECT_EQ(visitedBy(AudioMedia(file)), "audio");
    EXPECT_EQ(visitedBy(UnifiedClip(make_shared<AudioMedia>(file), make_shared<ColorMedia>(0U))), "unified");
    EXPECT_EQ(visitedBy(ColorMedia(0)), "color");
    EXPECT_EQ(visitedBy(VideoClip(file)), "video f");
    EXPECT_EQ(visitedBy(ScreenRecordingClip(file)), "recording f");
    EXPECT_EQ(visitedBy(ImageClip(file)), "image f");
    EXPECT_EQ(visitedBy(AnimatedGifClip(file)), "gif f");
    EXPECT_EQ(visitedBy(DocumentMedia("d", 1)), "document");
    EXPECT_EQ(visitedBy(FreezeFrameMedia(file, 0)), "freeze frame");
    EXPECT_EQ(visitedBy(CalloutMedia(nullptr)), "callout");
    EXPECT_EQ(visitedBy(GroupMedia()), "group");
}

TEST(MediaDispatcher, PlaceholdersAndGapsNeedNotBeHandled) {
    EXPECT_EQ(visitedBy(PlaceholderMedia()), "");
    EXPECT_EQ(visitedBy(GapMedia()), "");
}

TEST(MediaDispatcher, FileMediaTellTheirStream) {
    EXPECT_EQ(VideoClip(SourceFile{"f", 3}).streamIndex(), 3);
    EXPECT_EQ(ImageClip(SourceFile{"f"}).streamIndex(), -1);
}

TEST(ConvertMedia, GivesTheSameCallout) {
    const auto callout = make_shared<CalloutMedia>(nullptr);
    EXPECT_EQ(ConvertMedia(callout).GetCallout(), callout);
}

TEST(ConvertMedia, GivesNothingForAnotherKind) {
    EXPECT_FALSE(ConvertMedia(make_shared<ColorMedia>(0U)).GetCallout());
    EXPECT_FALSE(ConvertMedia(make_shared<GapMedia>()).GetCallout());
    EXPECT_FALSE(ConvertMedia(nullptr).GetCallout());
}

TEST(MediaTypeFromMediaDispatcher, ForgetsACalloutWhenItVisitsAnotherMedia) {
    const auto callout = make_shared<CalloutMedia>(nullptr);
    MediaTypeFromMediaDispatcher type;
    callout->accept(type);
    EXPECT_EQ(type.GetCallout(), callout);
    ColorMedia(0).accept(type);
    EXPECT_FALSE(type.GetCallout());
}

TEST(MediaTypeFromMediaDispatcher, GivesNoCalloutThatNoPointerOwns) {
    const CalloutMedia callout(nullptr);
    MediaTypeFromMediaDispatcher type;
    callout.accept(type);
    EXPECT_FALSE(type.GetCallout());
}

} // namespace
