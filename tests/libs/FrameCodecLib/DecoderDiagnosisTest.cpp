#include "platform/FrameCodecDiagnosis.h"

#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace FrameCodecLib {
namespace {

class DecoderDiagnosed : public testing::Test {
protected:
    static constexpr int anyVideo = -1;

    void expectReason(const std::string& file, int stream, NoDecoderReason reason) const {
        const DecoderDiagnosis diagnosis = DiagnoseDecoder(file, stream);
        EXPECT_EQ(diagnosis.reason, reason) << diagnosis.sentence;
        EXPECT_THAT(diagnosis.sentence, HasSubstr(file));
    }

    const TestSupport::TempFolder folder;
};

TEST_F(DecoderDiagnosed, FindsNothingWrongWithAVideo) {
    expectReason(videoPath("h264.mp4"), anyVideo, NoDecoderReason::NothingWrong);
}

TEST_F(DecoderDiagnosed, FileThatIsNotThereIsUnreadable) {
    expectReason(folder / "none.mp4", anyVideo, NoDecoderReason::Unreadable);
    expectReason(folder / "", anyVideo, NoDecoderReason::Unreadable);
}

TEST_F(DecoderDiagnosed, TextIsOfNoKnownFormat) {
    expectReason(folder.write("text.mp4", "This is no video."), anyVideo, NoDecoderReason::UnknownFormat);
}

TEST_F(DecoderDiagnosed, StreamOfSoundIsNoVideo) {
    expectReason(videoPath("with-audio.mp4"), 1, NoDecoderReason::NoVideo);
    expectReason(videoPath("with-audio.mp4"), 9, NoDecoderReason::NoVideo);
}

TEST_F(DecoderDiagnosed, RecordingWithoutItsIndexIsTruncated) {
    const std::string whole = TestSupport::readFile(videoPath("h264.mp4"));
    expectReason(folder.write("cut.mp4", whole.substr(0, whole.size() / 2)), anyVideo,
                 NoDecoderReason::Truncated);
}

TEST(DecoderDiagnosis, EachReasonHasAWordOfItsOwn) {
    EXPECT_STREQ(WordForReason(NoDecoderReason::NoVideo), "no-video");
    EXPECT_STREQ(WordForReason(NoDecoderReason::Truncated), "truncated");
    EXPECT_STREQ(WordForReason(NoDecoderReason::OutOfTime), "out-of-time");
}

} // namespace
} // namespace FrameCodecLib
