#include "production/PngTrackThumbnail.h"

#include "support/GdiplusUser.h"
#include "support/ShownNumber.h"
#include "support/TempFolder.h"
#include "support/video/PatchedMovie.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace KestoThumbnailer {

namespace {

using TestSupport::PatchedMovie;
using TestSupport::pixelOf;
using TestSupport::readFile;
using Picture = std::unique_ptr<Gdiplus::Bitmap>;

class PngTrackThumbnail : public ::testing::Test {
protected:
    static Picture thumbnailOf(const std::filesystem::path& path, double time, int width = 0,
                               int height = 0) {
        return Picture(GetThumbnailForPngTrack(TestSupport::wideOf(path), time, width, height));
    }
    static std::optional<int> numberOf(const std::filesystem::path& path, double time) {
        const Picture shown = thumbnailOf(path, time);
        return shown ? TestSupport::shownNumber(*shown) : std::nullopt;
    }
    std::filesystem::path write(const PatchedMovie& movie) const {
        return folder.write("movie.mov", movie.content());
    }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
    std::filesystem::path stills = videoPath("stills.mov");
};

} // namespace

TEST_F(PngTrackThumbnail, IsTheStillThatLastsAtTheTime) {
    for (int n = 0; n < 10; ++n)
        EXPECT_EQ(numberOf(stills, n / 25.0 + 0.02), n);
    EXPECT_EQ(numberOf(stills, 0), 0);
    EXPECT_EQ(numberOf(stills, 0.0399), 0);
    EXPECT_EQ(numberOf(stills, 0.04), 1);
}

TEST_F(PngTrackThumbnail, StillsMayLastDifferently) {
    const std::filesystem::path uneven = videoPath("stills-uneven.mov");
    EXPECT_EQ(numberOf(uneven, 0.03), 0);
    EXPECT_EQ(numberOf(uneven, 0.11), 2);
    EXPECT_EQ(numberOf(uneven, 0.39), 4);
    EXPECT_EQ(numberOf(uneven, 0.41), 5);
}

TEST_F(PngTrackThumbnail, TheTimeIsCutToTicks) {
    EXPECT_EQ(numberOf(stills, -0.00007), 0); // less than a tick before the start
    EXPECT_EQ(numberOf(stills, 0.04 - 1e-6), 0);
}

TEST_F(PngTrackThumbnail, IsNullOutsideTheTrack) {
    for (const double time : {0.4, 0.41, 10.0, 1e30, -0.001, -5.0, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()})
        EXPECT_FALSE(thumbnailOf(stills, time)) << time;
}

TEST_F(PngTrackThumbnail, TheLastOfSeveralTracksWins) {
    EXPECT_EQ(numberOf(videoPath("two-stills.mov"), 0.1), 22);
}

TEST_F(PngTrackThumbnail, AnEditListIsLeftAside) {
    EXPECT_EQ(numberOf(videoPath("stills-delayed.mov"), 0.1), 2);
}

TEST_F(PngTrackThumbnail, IsNullWithoutSuchATrack) {
    EXPECT_FALSE(thumbnailOf(videoPath("h264.mp4"), 0));
    EXPECT_FALSE(thumbnailOf(videoPath("prores.mov"), 0));
    EXPECT_FALSE(thumbnailOf(videoPath("tone.m4a"), 0));
}

TEST_F(PngTrackThumbnail, IsNullForWhatIsNoMovie) {
    EXPECT_FALSE(thumbnailOf("", 0));
    EXPECT_FALSE(thumbnailOf(folder / "missing.mov", 0));
    EXPECT_FALSE(thumbnailOf(folder.write("text.mov", "no movie"), 0));
    EXPECT_FALSE(thumbnailOf(videoPath("mpeg4.avi"), 0));
}

TEST_F(PngTrackThumbnail, AStillThatFitsIsReturnedAsDecoded) {
    const Picture whole = thumbnailOf(videoPath("stills-palette.mov"), 0, 128, 96);
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->GetPixelFormat(), PixelFormat8bppIndexed);
    EXPECT_EQ(whole->GetWidth(), 128U);
    EXPECT_EQ(whole->GetHeight(), 96U);
}

TEST_F(PngTrackThumbnail, AStillThatDoesNotFitIsScaled) {
    const Picture small = thumbnailOf(videoPath("stills-palette.mov"), 0, 127, 96);
    ASSERT_TRUE(small);
    EXPECT_EQ(small->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(small->GetWidth(), 127U);
    EXPECT_EQ(small->GetHeight(), 95U);
}

TEST_F(PngTrackThumbnail, BoundsOfNothingGiveACopyOfTheWhole) {
    for (const int bound : {0, -1}) {
        const Picture copy = thumbnailOf(videoPath("stills-palette.mov"), 0, bound, bound);
        ASSERT_TRUE(copy);
        EXPECT_EQ(copy->GetPixelFormat(), PixelFormat32bppARGB);
        EXPECT_EQ(copy->GetWidth(), 128U);
    }
}

TEST_F(PngTrackThumbnail, KeepsTransparency) {
    const Picture shown = thumbnailOf(videoPath("stills-alpha.mov"), 0, 64, 48);
    ASSERT_TRUE(shown);
    EXPECT_EQ(pixelOf(*shown, 10, 24), 0xFFFF0000);
    EXPECT_EQ(pixelOf(*shown, 54, 24) >> 24, 0U);
}

TEST_F(PngTrackThumbnail, IsNullForASampleOfNoBytes) {
    PatchedMovie movie(readFile(stills));
    movie.setSampleSize(9, 0);
    EXPECT_FALSE(thumbnailOf(write(movie), 0.37));
    EXPECT_EQ(numberOf(folder / "movie.mov", 0.33), 8);
}

TEST_F(PngTrackThumbnail, IsNullForASampleThatTheFileDoesNotHold) {
    PatchedMovie movie(readFile(stills));
    movie.setSampleSize(9, 100'000'000);
    EXPECT_FALSE(thumbnailOf(write(movie), 0.37));
}

TEST_F(PngTrackThumbnail, IsNullForASampleThatIsCutShort) {
    PatchedMovie movie(readFile(stills));
    movie.setSampleSize(9, movie.number("stsz", 12 + 4 * 9) / 2);
    EXPECT_FALSE(thumbnailOf(write(movie), 0.37));
}

TEST_F(PngTrackThumbnail, IsNullForASampleThatIsNoPng) {
    std::string content = readFile(stills);
    const std::size_t signature = content.find("\x89PNG");
    ASSERT_NE(signature, std::string::npos);
    content.replace(signature, 4, "none");
    const std::filesystem::path file = folder.write("movie.mov", content);
    EXPECT_FALSE(thumbnailOf(file, 0));
    EXPECT_EQ(numberOf(file, 0.05), 1);
}

} // namespace KestoThumbnailer
