#include "platform/RecordingWriter.h"

#include "libs/MOSK/OpenRecording.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include <sys/stat.h>

using testing::HasSubstr;
using testing::Optional;

namespace MOSK {
namespace {

class RecordingWriter : public testing::Test {
protected:
    /// Expects success.
    Tracks write(const std::vector<NewTrack>& tracks, const std::string& data = "") const {
        const WriteResult result = WriteRecording(tracks, data, output);
        EXPECT_TRUE(result.isWritten) << result.reason << ": " << result.message;
        EXPECT_EQ(result.reason, "");
        return tracksOf(output);
    }

    void expectRefused(const WriteResult& result, const std::string& reason, const std::string& words) const {
        EXPECT_FALSE(result.isWritten);
        EXPECT_EQ(result.reason, reason) << result.message;
        EXPECT_THAT(result.message, HasSubstr(words));
        EXPECT_FALSE(std::filesystem::exists(output));
    }

    const TestSupport::TempFolder folder;
    const std::string output = (folder / "talk.mosk").string();
};

TEST_F(RecordingWriter, GivesEachTrackItsRole) {
    const Tracks tracks = write({{videoPath("tone.m4a"), 103},
                                 {videoPath("camera.mp4"), 101},
                                 {videoPath("h264.mp4"), 100},
                                 {videoPath("with-audio.mp4"), 102}});
    ASSERT_EQ(tracks.size(), 4U);
    const std::int32_t codes[] = {103, 101, 100, 102};
    const std::int32_t kinds[] = {1, 0, 0, 1};
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        EXPECT_EQ(tracks[i]->typeCode(), codes[i]);
        EXPECT_EQ(tracks[i]->kind(), kinds[i]);
    }
    EXPECT_EQ(tracks[1]->format(), "avc1");
    EXPECT_EQ(tracks[3]->format(), "mp4a");
}

TEST_F(RecordingWriter, KeepsEachFrameAtItsTime) {
    const Tracks tracks = write({{videoPath("h264.mp4"), 100}, {videoPath("camera.mp4"), 101}});
    ASSERT_EQ(tracks.size(), 2U);
    for (int frame = 0; frame < 90; frame += 7) {
        EXPECT_THAT(numberAt(*tracks[0], frame / 25.0), Optional(frame));
        EXPECT_THAT(numberAt(*tracks[1], frame / 25.0), Optional(100 + frame));
    }
}

TEST_F(RecordingWriter, LetsTracksBeginAtTheStartWhereverTheirFilesBegan) {
    const Tracks tracks = write({{videoPath("starts-late.mkv"), 100}, {videoPath("cut-front.mp4"), 101}});
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_THAT(numberAt(*tracks[0], 0), Optional(0));
    EXPECT_THAT(numberAt(*tracks[0], 2), Optional(50));
    EXPECT_THAT(numberAt(*tracks[1], 0), Optional(12));
    EXPECT_THAT(numberAt(*tracks[1], 1), Optional(37));
}

TEST_F(RecordingWriter, KeepsVariableRates) {
    const Tracks tracks = write({{videoPath("variable-rate.mp4"), 100}});
    ASSERT_EQ(tracks.size(), 1U);
    for (const int frame : {0, 1, 5, 17, 38})
        EXPECT_THAT(numberAt(*tracks[0], frame * (frame + 3) / 100.0), Optional(frame));
}

TEST_F(RecordingWriter, KeepsTheShapeOfPixels) {
    const Tracks tracks = write({{videoPath("wide-pixels.mp4"), 100}});
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_EQ(tracks[0]->width(), 171U);
}

TEST_F(RecordingWriter, TakesVideoOutOfAviWhereFramesAreInOrder) {
    const Tracks tracks = write({{videoPath("mjpeg.avi"), 100}});
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_THAT(numberAt(*tracks[0], 33 / 25.0), Optional(33));
}

TEST_F(RecordingWriter, RefusesWhatDoesNotTellTheOrderOfItsFrames) {
    expectRefused(WriteRecording({{videoPath("h264.avi"), 100}}, "", output), "unsupported", "h264.avi");
}

TEST_F(RecordingWriter, TakesTheQuickTimeFormForCodecsThatMp4HasNoPlaceFor) {
    const WriteResult result =
        WriteRecording({{videoPath("camera.wmv"), 101}, {videoPath("tone.wav"), 102}}, "", output);
    ASSERT_TRUE(result.isWritten) << result.message;
    EXPECT_TRUE(result.isQuickTime);
    const Tracks tracks = tracksOf(output);
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(tracks[0]->typeCode(), 101);
    EXPECT_EQ(tracks[1]->typeCode(), 102);
    EXPECT_EQ(tracks[1]->format(), "sowt");
    EXPECT_THAT(numberAt(*tracks[0], 33 / 25.0), Optional(133));
}

TEST_F(RecordingWriter, IsAnMp4WhereThatHasAPlaceForAll) {
    const WriteResult result = WriteRecording({{videoPath("h264.mp4"), 100}}, "", output);
    EXPECT_TRUE(result.isWritten);
    EXPECT_FALSE(result.isQuickTime);
    EXPECT_EQ(TestSupport::readFile(output).substr(4, 8), "ftypisom");
}

TEST_F(RecordingWriter, AddsDataBehindTheOtherTracks) {
    const std::string events = "cursor 1 2\ncursor 3 4\n";
    const Tracks tracks = write({{videoPath("h264.mp4"), 100}}, folder.write("events.dat", events).string());
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(tracks[1]->kind(), 2);
    EXPECT_EQ(tracks[1]->format(), "qrl2");
    EXPECT_EQ(tracks[1]->typeCode(), 0);
    EXPECT_EQ(tracks[1]->width(), 0U);
    EXPECT_THAT(TestSupport::readFile(output), HasSubstr(events));
    EXPECT_THAT(numberAt(*tracks[0], 2), Optional(50));
    unsigned char pixel[4] = {};
    EXPECT_FALSE(tracks[1]->decodeFrameAtTime(0, pixel, sizeof pixel, nullptr));
}

TEST_F(RecordingWriter, NeverGivesDataARoleWhateverItsHandlerSays) {
    write({{videoPath("h264.mp4"), 100}}, folder.write("events.dat", "events").string());
    std::string content = TestSupport::readFile(output);
    const std::size_t name = content.rfind("Kesto Events");
    content.replace(name, 12, "Kesto Screen");
    content.replace(content.rfind("meta", name), 4, "vide");
    const Tracks tracks = tracksOf(folder.write("patched.mosk", content).string());
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(tracks[1]->kind(), 0);
    EXPECT_EQ(tracks[1]->format(), "qrl2");
    EXPECT_EQ(tracks[1]->typeCode(), 0);
    unsigned char pixel[4] = {};
    EXPECT_FALSE(tracks[1]->decodeFrameAtTime(0, pixel, sizeof pixel, nullptr));
    EXPECT_THAT(numberAt(*tracks[0], 1), Optional(25));
}

TEST_F(RecordingWriter, AddsDataToTheQuickTimeFormToo) {
    const Tracks tracks =
        write({{videoPath("camera.wmv"), 101}}, folder.write("events.dat", "events").string());
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(tracks[1]->format(), "qrl2");
}

TEST_F(RecordingWriter, WritesTheSameBytesEachTime) {
    write({{videoPath("h264.mp4"), 100}, {videoPath("tone.m4a"), 102}});
    const std::string first = TestSupport::readFile(output);
    write({{videoPath("h264.mp4"), 100}, {videoPath("tone.m4a"), 102}});
    EXPECT_EQ(TestSupport::readFile(output), first);
}

TEST_F(RecordingWriter, RefusesInputsByNameAndReason) {
    const std::string text = folder.write("notes.txt", "nothing to see").string();
    const std::string empty = folder.write("empty.dat", "").string();
    const std::string missing = (folder / "missing.mp4").string();
    expectRefused(WriteRecording({{missing, 100}}, "", output), "unreadable", missing);
    expectRefused(WriteRecording({{text, 100}}, "", output), "unknown-format", text);
    expectRefused(WriteRecording({{videoPath("tone.m4a"), 100}}, "", output), "no-such-stream", "tone.m4a");
    expectRefused(WriteRecording({{videoPath("h264.mp4"), 102}}, "", output), "no-such-stream", "sound");
    expectRefused(WriteRecording({{videoPath("h264.mp4"), 100}}, missing, output), "unreadable", missing);
    expectRefused(WriteRecording({{videoPath("h264.mp4"), 100}}, empty, output), "damaged", empty);
    expectRefused(WriteRecording({{videoPath("h264.mp4"), 104}}, "", output), "unsupported", "104");
    expectRefused(WriteRecording({}, "", output), "unsupported", "at least one");
}

TEST_F(RecordingWriter, RefusesAFileThatIsCutOff) {
    const std::string fast = TestSupport::readFile(videoPath("fragmented.mp4"));
    const auto cut = folder.write("cut.mp4", fast.substr(0, fast.rfind("mdat") + 1000)).string();
    expectRefused(WriteRecording({{cut, 100}}, "", output), "damaged", cut);
}

TEST_F(RecordingWriter, LeavesAnOlderFileWhereItFails) {
    folder.write("talk.mosk", "older");
    const WriteResult result = WriteRecording({{videoPath("h264.avi"), 100}}, "", output);
    EXPECT_FALSE(result.isWritten);
    EXPECT_EQ(TestSupport::readFile(output), "older");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / ""), {}), 1);
}

TEST_F(RecordingWriter, TellsWhichOutputCannotBeWritten) {
    const std::string inNoFolder = (folder / "none/talk.mosk").string();
    const WriteResult result = WriteRecording({{videoPath("h264.mp4"), 100}}, "", inNoFolder);
    EXPECT_EQ(result.reason, "not-written");
    EXPECT_THAT(result.message, HasSubstr(inNoFolder));
}

TEST_F(RecordingWriter, DoesNotWaitForTheReaderOfAPipe) {
    ASSERT_EQ(::mkfifo(output.c_str(), 0600), 0);
    const WriteResult result = WriteRecording({{videoPath("h264.mp4"), 100}}, "", output);
    EXPECT_EQ(result.reason, "not-written");
    EXPECT_EQ(result.message, output + ": a pipe or a device; a regular file is expected");
}

struct MemberCase {
    std::string file;
    MemberContainer container;
    bool isMember;
};

TEST(MemberFile, IsOneOfItsContainerWithItsMedia) {
    const std::vector<MemberCase> cases = {
        {"mjpeg.avi", MemberContainer::Avi, true},   {"h264.mp4", MemberContainer::Avi, false},
        {"camera.wmv", MemberContainer::Asf, true},  {"mjpeg.avi", MemberContainer::Asf, false},
        {"tone.wav", MemberContainer::Wav, true},    {"tone.m4a", MemberContainer::Wav, false},
        {"missing.avi", MemberContainer::Avi, false}};
    for (const MemberCase& each : cases)
        EXPECT_EQ(IsMemberFile(videoPath(each.file), each.container), each.isMember) << each.file;
}

TEST(MemberFile, HasTheFramesOfTheFileItWasMadeOf) {
    const TestSupport::TempFolder folder;
    const std::string avi = (folder / "screen.avi").string();
    const std::string wmv = (folder / "camera.wmv").string();
    EXPECT_TRUE(WriteMemberFile(videoPath("with-audio.mp4"), MemberContainer::Avi, avi).isWritten);
    EXPECT_TRUE(WriteMemberFile(videoPath("camera-in-order.mp4"), MemberContainer::Asf, wmv).isWritten);
    EXPECT_TRUE(IsMemberFile(avi, MemberContainer::Avi));
    EXPECT_TRUE(IsMemberFile(wmv, MemberContainer::Asf));
    EXPECT_THAT(videoNumberAt(avi, {33, 25}), Optional(33));
    EXPECT_THAT(videoNumberAt(wmv, {33, 25}), Optional(133));
}

TEST(MemberFile, IsRefusedWhereTheContainerCannotTellTheOrderOfItsFrames) {
    const TestSupport::TempFolder folder;
    const WriteResult result =
        WriteMemberFile(videoPath("camera.mp4"), MemberContainer::Asf, (folder / "camera.wmv").string());
    EXPECT_EQ(result.reason, "unsupported");
    EXPECT_THAT(result.message, testing::AllOf(HasSubstr("camera.mp4"), HasSubstr("B-frames")));
}

TEST(MemberFile, IsRefusedWithWhatTheContainerHolds) {
    const TestSupport::TempFolder folder;
    const std::string wav = (folder / "sound.wav").string();
    const WriteResult result = WriteMemberFile(videoPath("tone.opus"), MemberContainer::Wav, wav);
    EXPECT_EQ(result.reason, "unsupported");
    EXPECT_THAT(result.message, testing::AllOf(HasSubstr("tone.opus"), HasSubstr("wav has no place for opus"),
                                               HasSubstr("pcm_s16le")));
    EXPECT_FALSE(std::filesystem::exists(wav));
}

} // namespace
} // namespace MOSK
