#include "platform/Mp4v2.h"

#include "support/GdiplusUser.h"
#include "support/ShownNumber.h"
#include "support/TempFolder.h"
#include "support/video/PatchedMovie.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::StrEq;
using TestSupport::PatchedMovie;
using TestSupport::readFile;

constexpr MP4Timestamp tick = 512; ///< of a frame, 25 to the second

class Movie {
public:
    explicit Movie(const std::string& path)
        : handle(MP4Read(path.c_str())) {}
    ~Movie() {
        if (handle)
            MP4Close(handle, 0);
    }
    Movie(const Movie&) = delete;
    Movie& operator=(const Movie&) = delete;

    operator MP4FileHandle() const { return handle; } // NOLINT(google-explicit-constructor): as in the calls
    MP4TrackId track(std::uint16_t index) const { return MP4FindTrackId(handle, index, nullptr, 0); }
    MP4SampleId at(MP4Timestamp when) const { return MP4GetSampleIdFromTime(handle, track(0), when, false); }

    /// Empty when it can't be read.
    std::string read(MP4TrackId track, MP4SampleId sample) const {
        std::uint8_t* bytes = nullptr;
        std::uint32_t count = 0;
        if (!MP4ReadSample(handle, track, sample, &bytes, &count, nullptr, nullptr, nullptr, nullptr))
            return {};
        std::string content(reinterpret_cast<const char*>(bytes), count);
        std::free(bytes);
        return content;
    }

private:
    MP4FileHandle handle;
};

class Mp4v2 : public ::testing::Test {
protected:
    std::string write(const std::string& content) const {
        return folder.write("movie.mov", content).string();
    }
    static std::string contentOf(const std::string& name) { return readFile(videoPath(name)); }

    TestSupport::TempFolder folder;
};

std::optional<int> numberOf(const std::string& png) {
    const TestSupport::TempFolder folder;
    Gdiplus::Bitmap bitmap(TestSupport::wideOf(folder.write("still.png", png)).c_str());
    return TestSupport::shownNumber(bitmap);
}

TEST_F(Mp4v2, AMovieTellsItsTracksInTheOrderOfTheFile) {
    const Movie movie(videoPath("two-stills.mov"));
    ASSERT_EQ(MP4GetNumberOfTracks(movie, nullptr, 0), 4U);
    std::vector<std::string> formats;
    for (std::uint16_t i = 0; i < 4; ++i)
        formats.emplace_back(MP4GetTrackMediaDataName(movie, movie.track(i)));
    EXPECT_THAT(formats, ElementsAre("avc1", "mp4a", "png ", "png "));
}

TEST_F(Mp4v2, ATrackTellsItsClockAndDuration) {
    const Movie movie(videoPath("two-stills.mov"));
    EXPECT_EQ(MP4GetTrackTimeScale(movie, movie.track(0)), 12800U);
    EXPECT_EQ(MP4GetTrackDuration(movie, movie.track(0)), 90 * tick);
    EXPECT_EQ(MP4GetTrackTimeScale(movie, movie.track(1)), 44100U);
    EXPECT_EQ(MP4GetTrackDuration(movie, movie.track(2)), 10 * tick);
}

TEST_F(Mp4v2, ATimeIsThatOfTheSampleWhoseIntervalCoversIt) {
    const Movie movie(videoPath("stills.mov"));
    EXPECT_EQ(movie.at(0), 1U);
    EXPECT_EQ(movie.at(tick - 1), 1U);
    EXPECT_EQ(movie.at(tick), 2U);
    EXPECT_EQ(movie.at(9 * tick), 10U);
    EXPECT_EQ(movie.at(10 * tick - 1), 10U);
}

TEST_F(Mp4v2, IntervalsMayDiffer) {
    const Movie movie(videoPath("stills-uneven.mov"));
    for (MP4SampleId n = 0; n < 9; ++n) {
        const MP4Timestamp start = MP4Timestamp{n} * (n + 3) * 128;
        EXPECT_EQ(movie.at(start), n + 1) << n;
        EXPECT_EQ(movie.at(start + 1), n + 1) << n;
        EXPECT_EQ(movie.at(start + MP4Timestamp{n + 2} * 256 - 1), n + 1) << n;
    }
}

TEST_F(Mp4v2, BehindTheEndThereIsNoSample) {
    const Movie movie(videoPath("stills.mov"));
    EXPECT_EQ(movie.at(10 * tick + 1), MP4_INVALID_SAMPLE_ID);
    EXPECT_EQ(movie.at(1'000'000'000'000), MP4_INVALID_SAMPLE_ID);
    EXPECT_EQ(movie.at(std::numeric_limits<MP4Timestamp>::max()), MP4_INVALID_SAMPLE_ID);
}

TEST_F(Mp4v2, AtTheEndItselfNothingCanBeRead) {
    const Movie movie(videoPath("stills.mov"));
    const MP4SampleId sample = movie.at(10 * tick);
    EXPECT_EQ(MP4GetSampleSize(movie, movie.track(0), sample), 0U);
    EXPECT_EQ(movie.read(movie.track(0), sample), "");
}

TEST_F(Mp4v2, AnEditListIsLeftAside) {
    const Movie movie(videoPath("stills-delayed.mov"));
    EXPECT_EQ(movie.at(0), 1U);
    const TestSupport::GdiplusUser gdiplus;
    EXPECT_EQ(numberOf(movie.read(movie.track(0), movie.at(3 * tick))), 3);
}

TEST_F(Mp4v2, SamplesThatAnEditListCutsAwayAreThere) {
    const TestSupport::GdiplusUser gdiplus;
    PatchedMovie cut(contentOf("stills.mov"));
    cut.setNumber("elst", 12, 5 * tick); // the first half is not shown
    const Movie movie(write(cut.content()));
    EXPECT_EQ(movie.at(9 * tick), 10U);
    EXPECT_EQ(numberOf(movie.read(movie.track(0), movie.at(0))), 0);
}

TEST_F(Mp4v2, AStillThatLastsNoTimeIsThereAtItsStart) {
    PatchedMovie still(contentOf("stills.mov"));
    still.setNumber("stts", 8, 1); // one sample
    still.setNumber("stts", 12, 0);
    still.setNumber("stsz", 8, 1);
    still.setNumber("stsc", 12, 1);
    still.setNumber("mdhd", 16, 0);
    const Movie movie(write(still.content()));
    EXPECT_EQ(movie.at(0), 1U);
    EXPECT_EQ(movie.at(1), MP4_INVALID_SAMPLE_ID);
}

TEST_F(Mp4v2, ASampleToStartFromIsThatOneOrTheNext) {
    const Movie movie(videoPath("h264.mp4"));
    const auto syncAt = [&movie](MP4Timestamp when) {
        return MP4GetSampleIdFromTime(movie, movie.track(0), when, true);
    };
    EXPECT_EQ(syncAt(0), 1U);
    EXPECT_EQ(syncAt(tick), 31U);
    EXPECT_EQ(syncAt(30 * tick), 31U);
    EXPECT_EQ(syncAt(61 * tick), MP4_INVALID_SAMPLE_ID);
}

TEST_F(Mp4v2, ASampleIsReadWhole) {
    const TestSupport::GdiplusUser gdiplus;
    const Movie movie(videoPath("two-stills.mov"));
    for (MP4SampleId sample = 1; sample <= 10; ++sample) {
        const std::string first = movie.read(movie.track(2), sample);
        EXPECT_EQ(first.size(), MP4GetSampleSize(movie, movie.track(2), sample));
        EXPECT_EQ(numberOf(first), static_cast<int>(sample) - 1);
        EXPECT_EQ(numberOf(movie.read(movie.track(3), sample)), static_cast<int>(sample) + 19);
    }
}

TEST_F(Mp4v2, ASampleTellsItsTimes) {
    const Movie movie(videoPath("stills-uneven.mov"));
    std::uint8_t* bytes = nullptr;
    std::uint32_t count = 0;
    MP4Timestamp start = 0;
    MP4Duration duration = 0;
    bool isSync = false;
    ASSERT_TRUE(MP4ReadSample(movie, movie.track(0), 3, &bytes, &count, &start, &duration, nullptr, &isSync));
    std::free(bytes);
    EXPECT_EQ(start, 10 * 128U);
    EXPECT_EQ(duration, 8 * 128U);
    EXPECT_TRUE(isSync);
}

TEST_F(Mp4v2, ASampleIsReadIntoMemoryOfTheCaller) {
    const Movie movie(videoPath("stills.mov"));
    const std::string expected = movie.read(movie.track(0), 2);
    std::string memory(expected.size() + 5, '#');
    auto* bytes = reinterpret_cast<std::uint8_t*>(memory.data());
    auto count = static_cast<std::uint32_t>(memory.size());
    ASSERT_TRUE(MP4ReadSample(movie, movie.track(0), 2, &bytes, &count, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(count, expected.size());
    EXPECT_EQ(memory, expected + "#####");
}

TEST_F(Mp4v2, MemoryThatIsTooSmallIsNotWrittenTo) {
    const Movie movie(videoPath("stills.mov"));
    std::string memory(MP4GetSampleSize(movie, movie.track(0), 2), '#');
    const std::string before = memory;
    auto* bytes = reinterpret_cast<std::uint8_t*>(memory.data());
    auto count = static_cast<std::uint32_t>(memory.size() - 1);
    EXPECT_FALSE(MP4ReadSample(movie, movie.track(0), 2, &bytes, &count, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(memory, before);
}

TEST_F(Mp4v2, NumbersThatAreNotThereAreInvalid) {
    const Movie movie(videoPath("stills.mov"));
    EXPECT_EQ(movie.track(1), MP4_INVALID_TRACK_ID);
    EXPECT_EQ(MP4GetTrackMediaDataName(movie, 99), nullptr);
    EXPECT_EQ(MP4GetTrackTimeScale(movie, 99), 0U);
    EXPECT_EQ(MP4GetTrackDuration(movie, 99), MP4_INVALID_DURATION);
    EXPECT_EQ(MP4GetSampleIdFromTime(movie, 99, 0, false), MP4_INVALID_SAMPLE_ID);
    for (const MP4SampleId sample : {0U, 11U, 0xFFFFFFFFU}) {
        EXPECT_EQ(MP4GetSampleSize(movie, movie.track(0), sample), 0U);
        EXPECT_EQ(movie.read(movie.track(0), sample), "");
    }
}

TEST_F(Mp4v2, AMovieWithoutTracksHasNone) {
    PatchedMovie bare(contentOf("stills.mov"));
    bare.rename("trak", "free");
    const Movie movie(write(bare.content()));
    ASSERT_NE(static_cast<MP4FileHandle>(movie), MP4_INVALID_FILE_HANDLE);
    EXPECT_EQ(MP4GetNumberOfTracks(movie, nullptr, 0), 0U);
    EXPECT_EQ(movie.track(0), MP4_INVALID_TRACK_ID);
}

TEST_F(Mp4v2, ASampleOfNoBytesHasTheSizeZeroAndItsTime) {
    const TestSupport::GdiplusUser gdiplus;
    PatchedMovie patched(contentOf("stills.mov"));
    patched.setSampleSize(9, 0);
    const Movie movie(write(patched.content()));
    EXPECT_EQ(movie.at(9 * tick), 10U);
    EXPECT_EQ(MP4GetSampleSize(movie, movie.track(0), 10), 0U);
    EXPECT_EQ(numberOf(movie.read(movie.track(0), 9)), 8);
}

TEST_F(Mp4v2, ASampleThatReachesBehindTheFileCannotBeRead) {
    PatchedMovie patched(contentOf("stills.mov"));
    patched.setSampleSize(9, 0x3FFFFFF0);
    const Movie movie(write(patched.content()));
    EXPECT_EQ(MP4GetSampleSize(movie, movie.track(0), 10), 0x3FFFFFF0U);
    EXPECT_EQ(movie.read(movie.track(0), 10), "");
    EXPECT_NE(movie.read(movie.track(0), 9), "");
}

TEST_F(Mp4v2, OfATruncatedFileSamplesAreReadWholeOrNotAtAll) {
    const std::string whole = contentOf("stills-headers-first.mov");
    const Movie original(videoPath("stills.mov"));
    for (std::size_t length = 0; length < whole.size(); length += 97) {
        const Movie movie(write(whole.substr(0, length)));
        for (MP4SampleId sample = 1; sample <= 10; ++sample)
            EXPECT_THAT(movie.read(movie.track(0), sample),
                        ::testing::AnyOf("", StrEq(original.read(original.track(0), sample))))
                << length;
    }
}

TEST_F(Mp4v2, AnInvalidHandleHasNothing) {
    EXPECT_EQ(MP4GetNumberOfTracks(MP4_INVALID_FILE_HANDLE, nullptr, 0), 0U);
    EXPECT_EQ(MP4FindTrackId(MP4_INVALID_FILE_HANDLE, 0, nullptr, 0), MP4_INVALID_TRACK_ID);
    EXPECT_EQ(MP4GetTrackMediaDataName(MP4_INVALID_FILE_HANDLE, 1), nullptr);
    EXPECT_EQ(MP4GetTrackTimeScale(MP4_INVALID_FILE_HANDLE, 1), 0U);
    EXPECT_EQ(MP4GetTrackDuration(MP4_INVALID_FILE_HANDLE, 1), MP4_INVALID_DURATION);
    EXPECT_EQ(MP4GetSampleIdFromTime(MP4_INVALID_FILE_HANDLE, 1, 0, false), MP4_INVALID_SAMPLE_ID);
    EXPECT_EQ(MP4GetSampleSize(MP4_INVALID_FILE_HANDLE, 1, 1), 0U);
    MP4Close(MP4_INVALID_FILE_HANDLE, 0);
}

TEST_F(Mp4v2, WhatIsNoMovieIsNotOpened) {
    EXPECT_EQ(MP4Read((folder / "missing.mov").c_str()), MP4_INVALID_FILE_HANDLE);
    EXPECT_EQ(MP4Read(folder.write("empty.mov", "").c_str()), MP4_INVALID_FILE_HANDLE);
    EXPECT_EQ(MP4Read(folder.write("text.mov", "no movie at all").c_str()), MP4_INVALID_FILE_HANDLE);
    EXPECT_EQ(MP4Read(videoPath("mpeg4.avi").c_str()), MP4_INVALID_FILE_HANDLE);
}

} // namespace
