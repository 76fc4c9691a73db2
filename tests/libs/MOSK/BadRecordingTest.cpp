#include "libs/MOSK/OpenRecording.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace MOSK {
namespace {

class BadRecording : public testing::Test {
protected:
    bool opens(const std::string& content) const {
        return openRecording(folder.write("bad.mosk", content).string()) != nullptr;
    }

    const TestSupport::TempFolder folder;
    const std::string whole = TestSupport::readFile(videoPath("recording.mosk"));
};

TEST_F(BadRecording, ThatIsMissingIsNone) {
    EXPECT_FALSE(openRecording((folder / "missing.mosk").string()));
    EXPECT_FALSE(openRecording(""));
}

TEST_F(BadRecording, ThatIsAFolderOrAPipeIsNone) {
    EXPECT_FALSE(openRecording((folder / "").string()));
    const std::string pipe = (folder / "pipe.mosk").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(openRecording(pipe));
}

TEST_F(BadRecording, OfOtherContentIsNone) {
    EXPECT_FALSE(opens(""));
    EXPECT_FALSE(opens("This is no recording.\n"));
    EXPECT_FALSE(opens(std::string(100'000, '\0')));
}

TEST_F(BadRecording, OfAnotherContainerIsNone) {
    EXPECT_FALSE(opens(TestSupport::readFile(videoPath("mpeg4.avi"))));
    EXPECT_FALSE(opens(TestSupport::readFile(videoPath("h264.mkv"))));
}

TEST_F(BadRecording, ThatEndsBeforeItsIndexIsNone) {
    EXPECT_FALSE(opens(whole.substr(0, whole.find("moov"))));
    EXPECT_FALSE(opens(whole.substr(0, 40)));
}

TEST_F(BadRecording, CutAnywhereIsNoneOrHasTracks) {
    for (std::size_t length = whole.find("moov"); length < whole.size(); length += 97) {
        const auto reader = openRecording(folder.write("cut.mosk", whole.substr(0, length)).string());
        for (const auto& track : reader ? reader->tracks() : Tracks())
            (void)numberAt(*track, 1);
    }
}

TEST_F(BadRecording, ThatIsUnfinishedShowsItsFinishedFragments) {
    const std::string fragments = TestSupport::readFile(videoPath("fragmented.mosk"));
    const auto reader = openRecording(
        folder.write("unfinished.mosk", fragments.substr(0, fragments.rfind("mdat") + 1000)).string());
    ASSERT_TRUE(reader);
    const Tracks tracks = reader->tracks();
    ASSERT_EQ(tracks.size(), 4U);
    EXPECT_EQ(tracks[0]->typeCode(), 100);
    EXPECT_EQ(numberAt(*tracks[0], 10 / 25.0), 10);
}

TEST_F(BadRecording, WhoseFramesAreGoneStillTellsItsTracks) {
    std::string hollow = whole;
    const std::size_t content = hollow.find("mdat") + 4;
    hollow.replace(content, hollow.find("moov") - 4 - content, hollow.find("moov") - 4 - content, '\0');
    const Tracks tracks = tracksOf(folder.write("hollow.mosk", hollow).string());
    ASSERT_EQ(tracks.size(), 4U);
    EXPECT_EQ(tracks[1]->typeCode(), 101);
    EXPECT_FALSE(numberAt(*tracks[0], 1));
}

} // namespace
} // namespace MOSK
