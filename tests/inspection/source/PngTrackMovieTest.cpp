#include "inspection/source/PngTrackMovie.h"

#include "inspection/source/Mp4Bytes.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using namespace Mp4Bytes; // NOLINT(google-build-using-namespace): the vocabulary of this file
using TestSupport::TempFolder;
using TestSupport::wideOf;

std::string movie(const std::string& tracks) {
    return ftyp() + atom("moov", mvhd() + tracks) + atom("mdat", "samples");
}

std::string pngTrak() {
    return videoTrak({.width = 9, .height = 9}, stsd(1, videoEntry("png ", 9, 9)));
}

std::uint32_t answerFor(const std::string& name, const std::string& bytes) {
    const TempFolder temp;
    return HasPngVideoTrack(wideOf(temp.write(name, bytes)));
}

TEST(HasPngVideoTrack, FindsOneAmongTheTracks) {
    EXPECT_EQ(answerFor("a.mov", movie(pngTrak())), 1U);
    EXPECT_EQ(answerFor("a.MoV", movie(soundTrak() + videoTrak() + pngTrak())), 1U);
}

TEST(HasPngVideoTrack, WantsVideoInThatVeryFormat) {
    EXPECT_EQ(answerFor("a.mov", movie(videoTrak())), 0U);
    EXPECT_EQ(answerFor("a.mov", movie(videoTrak({}, stsd(1, videoEntry("PNG ", 9, 9))))), 0U);
    EXPECT_EQ(answerFor("a.mov", movie(trak(Tkhd{}.bytes(), hdlr("soun"), stsd(1, sampleEntry("png "))))),
              0U);
}

TEST(HasPngVideoTrack, LooksAtMoviesAlone) {
    EXPECT_EQ(answerFor("a.mp4", movie(pngTrak())), 0U);
    EXPECT_EQ(answerFor("mov", movie(pngTrak())), 0U);
}

TEST(HasPngVideoTrack, FindsNoneInAFileThatIsNotThere) {
    const TempFolder temp;
    EXPECT_EQ(HasPngVideoTrack(wideOf(temp / "missing.mov")), 0U);
    EXPECT_EQ(HasPngVideoTrack(L"name.plumex!Audio.mov"), 0U);
}

TEST(HasPngVideoTrack, FindsOneBeforeTheBrokenPartOfAFile) {
    EXPECT_EQ(answerFor("a.mov", ftyp() + atomOfSize(10000, "moov", pngTrak() + "cut")), 1U);
    EXPECT_EQ(answerFor("a.mov", "no movie"), 0U);
}

TEST(IsPngTrackMovie, KeepsItsFirstAnswerForAPath) {
    const TempFolder temp;
    const std::wstring path = wideOf(temp.write("a.mov", movie(pngTrak())));
    const std::wstring other = wideOf(temp.write("b.mov", movie(videoTrak())));
    EXPECT_EQ(IsPngTrackMovie(path), 1U);
    EXPECT_EQ(IsPngTrackMovie(other), 0U);
    temp.write("a.mov", movie(videoTrak()));
    temp.write("b.mov", movie(pngTrak()));
    EXPECT_EQ(IsPngTrackMovie(path), 1U);
    EXPECT_EQ(IsPngTrackMovie(other), 0U);
    EXPECT_EQ(HasPngVideoTrack(path), 0U);
}

TEST(IsPngTrackMovie, KeepsThatAFileWasNotThere) {
    const TempFolder temp;
    const std::wstring path = wideOf(temp / "late.mov");
    EXPECT_EQ(IsPngTrackMovie(path), 0U);
    temp.write("late.mov", movie(pngTrak()));
    EXPECT_EQ(IsPngTrackMovie(path), 0U);
}

TEST(IsPngTrackMovie, MayBeAskedOnAnyThread) {
    const TempFolder temp;
    std::vector<std::wstring> paths;
    for (int number = 0; number < 20; ++number)
        paths.push_back(wideOf(temp.write(std::to_string(number) + ".mov", movie(pngTrak()))));
    std::vector<std::uint32_t> found(4);
    std::vector<std::thread> threads;
    for (std::uint32_t& count : found)
        threads.emplace_back([&paths, &count] {
            for (const std::wstring& path : paths)
                count += IsPngTrackMovie(path);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(found, (std::vector<std::uint32_t>{20, 20, 20, 20}));
}

} // namespace
