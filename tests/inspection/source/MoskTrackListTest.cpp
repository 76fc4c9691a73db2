#include "inspection/source/MoskTrackList.h"

#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

using TrackList = std::vector<std::pair<std::int32_t, std::int32_t>>;

constexpr std::pair<std::int32_t, std::int32_t> untouched = {7, 8};

class MoskTrackList : public testing::Test {
protected:
    std::string copyOf(const std::string& video) const {
        return folder.write("talk.mosk", TestSupport::readFile(videoPath(video))).string();
    }

    const TestSupport::TempFolder folder;
    TrackList tracks = {untouched};
};

TEST_F(MoskTrackList, TellsKindAndSourceOfEachTrack) {
    EXPECT_TRUE(ReadMoskTrackList(videoPath("recording.mosk"), tracks));
    EXPECT_THAT(tracks, ElementsAre(Pair(3, 100), Pair(1, 101), Pair(2, 102), Pair(2, 103)));
}

TEST_F(MoskTrackList, TellsNothingOfTracksWithoutARole) {
    EXPECT_TRUE(ReadMoskTrackList(videoPath("named-otherwise.mosk"), tracks));
    EXPECT_THAT(tracks, ElementsAre(Pair(3, 100), Pair(0, 0), Pair(0, 0), Pair(0, 0)));
}

TEST_F(MoskTrackList, OfAFileThatIsNotThereIsRefused) {
    EXPECT_FALSE(ReadMoskTrackList((folder / "none.mosk").string(), tracks));
    EXPECT_FALSE(ReadMoskTrackList("", tracks));
    EXPECT_THAT(tracks, ElementsAre(untouched));
}

TEST_F(MoskTrackList, OfAFileThatIsNoRecordingIsEmpty) {
    EXPECT_TRUE(ReadMoskTrackList(folder.write("text.mosk", "no recording").string(), tracks));
    EXPECT_THAT(tracks, IsEmpty());
}

TEST_F(MoskTrackList, IsKeptWhileTheFileIsNotWritten) {
    const std::string file = copyOf("two-screens.mosk");
    const auto written = std::filesystem::last_write_time(file);
    EXPECT_TRUE(ReadMoskTrackList(file, tracks));
    copyOf("camera.mp4");
    std::filesystem::last_write_time(file, written);
    EXPECT_TRUE(ReadMoskTrackList(file, tracks));
    EXPECT_THAT(tracks, ElementsAre(Pair(3, 100), Pair(3, 100)));
}

TEST_F(MoskTrackList, OfAFileTouchedOnDiskIsReadAgain) {
    const std::string file = copyOf("two-screens.mosk");
    const auto written = std::filesystem::last_write_time(file);
    EXPECT_TRUE(ReadMoskTrackList(file, tracks));
    copyOf("camera.mp4");
    std::filesystem::last_write_time(file, written + std::chrono::seconds(1));
    EXPECT_TRUE(ReadMoskTrackList(file, tracks));
    EXPECT_THAT(tracks, ElementsAre(Pair(0, 0)));
    // A time further back is another time, too.
    copyOf("two-screens.mosk");
    std::filesystem::last_write_time(file, written - std::chrono::seconds(1));
    EXPECT_TRUE(ReadMoskTrackList(file, tracks));
    EXPECT_THAT(tracks, ElementsAre(Pair(3, 100), Pair(3, 100)));
}

TEST_F(MoskTrackList, FindsAFileWhateverItsLettersAndSeparators) {
    copyOf("recording.mosk");
    EXPECT_TRUE(ReadMoskTrackList((folder / "").string() + "\\TALK.mosk", tracks));
    EXPECT_EQ(tracks.size(), 4U);
}

TEST_F(MoskTrackList, MayBeAskedForOnAnyThread) {
    const std::string file = copyOf("recording.mosk");
    std::vector<TrackList> lists(4);
    {
        std::vector<std::thread> threads;
        for (TrackList& list : lists)
            threads.emplace_back([&file, &list] { ReadMoskTrackList(file, list); });
        for (std::thread& thread : threads)
            thread.join();
    }
    for (const TrackList& list : lists)
        EXPECT_THAT(list, ElementsAre(Pair(3, 100), Pair(1, 101), Pair(2, 102), Pair(2, 103)));
}

} // namespace
