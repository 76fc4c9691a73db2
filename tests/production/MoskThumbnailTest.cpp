#include "production/GdiplusBitmapThumbnailingHelper.h"

#include "support/GdiplusUser.h"
#include "support/TempFolder.h"
#include "support/recording/ScriptedRecordings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace KestoThumbnailer {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::FrameCall;
using TestSupport::pixelOf;
using TestSupport::RecordingRequest;
using TestSupport::ScriptedTrack;
using Picture = std::unique_ptr<Gdiplus::Bitmap>;

constexpr std::int32_t screen = 100;
constexpr std::int32_t camera = 101;
constexpr std::int32_t microphone = 102;
constexpr std::int32_t audioKind = 1;
constexpr int anyTrack = -1;

constexpr Gdiplus::ARGB red = 0xFFFF0000;
constexpr Gdiplus::ARGB blue = 0xFF0000FF;
constexpr Gdiplus::ARGB green = 0xFF00FF00;

ScriptedTrack track(std::int32_t typeCode, Gdiplus::ARGB color, unsigned width = 164, unsigned height = 92) {
    return {typeCode, width, height, [color](int, int) { return color; }};
}

ScriptedTrack sound(std::int32_t typeCode) {
    return {.typeCode = typeCode, .pixelAt = {}, .kind = audioKind};
}

class MoskThumbnail : public ::testing::Test {
protected:
    void record(std::vector<ScriptedTrack> tracks) { recordings.tracksOf[file.string()] = std::move(tracks); }

    static Picture thumbnailOf(const std::filesystem::path& path, int trackIndex = anyTrack, double time = 0,
                               int width = 0, int height = 0) {
        return Picture(GdiplusBitmapThumbnailingHelper::GetThumbnailForMosk(TestSupport::wideOf(path), time,
                                                                            width, height, trackIndex));
    }
    Picture thumbnail(int trackIndex = anyTrack) const { return thumbnailOf(file, trackIndex); }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
    TestSupport::ScriptedRecordings recordings;
    std::filesystem::path file = folder.write("recording.mosk", "content");
};

/// The colour at the top left, and the one in the quarter of the inset.
void expectColors(const Picture& picture, Gdiplus::ARGB whole, Gdiplus::ARGB quarter) {
    ASSERT_TRUE(picture);
    EXPECT_EQ(pixelOf(*picture, 0, 0), whole);
    const auto right = static_cast<int>(picture->GetWidth()) - 1;
    const auto bottom = static_cast<int>(picture->GetHeight()) - 1;
    EXPECT_EQ(pixelOf(*picture, right, bottom), quarter);
}

} // namespace

TEST_F(MoskThumbnail, IsTheScreenWithTheCameraInItsCorner) {
    record({track(screen, red), track(camera, blue, 40, 30), sound(microphone)});
    const Picture shown = thumbnail();
    expectColors(shown, red, blue);
    EXPECT_EQ(shown->GetWidth(), 164U);
    EXPECT_EQ(shown->GetHeight(), 92U);
    EXPECT_EQ(shown->GetPixelFormat(), PixelFormat32bppPARGB);
    EXPECT_EQ(pixelOf(*shown, 82, 46), blue);
    EXPECT_EQ(pixelOf(*shown, 81, 46), red);
    EXPECT_EQ(pixelOf(*shown, 82, 45), red);
}

TEST_F(MoskThumbnail, TheOrderOfTheTracksPlaysNoPart) {
    record({track(camera, blue, 40, 30), track(screen, red)});
    expectColors(thumbnail(), red, blue);
}

TEST_F(MoskThumbnail, OfOneKindAloneIsItsWhole) {
    record({track(screen, red)});
    expectColors(thumbnail(), red, red);
    record({track(camera, blue, 40, 30)});
    const Picture shown = thumbnail();
    expectColors(shown, blue, blue);
    EXPECT_EQ(shown->GetWidth(), 40U);
}

TEST_F(MoskThumbnail, TheLastTrackOfAKindWins) {
    record({track(screen, red), track(screen, green, 80, 46), track(camera, red, 9, 9),
            track(camera, blue, 9, 9)});
    const Picture shown = thumbnail();
    expectColors(shown, green, blue);
    EXPECT_EQ(shown->GetWidth(), 80U);
}

TEST_F(MoskThumbnail, TracksOfOtherTypesArePassedOver) {
    record({track(0, green), track(104, green), track(screen, red), track(microphone, green)});
    expectColors(thumbnail(), red, red);
    EXPECT_EQ(recordings.frameCalls.size(), 1U);
}

TEST_F(MoskThumbnail, ATrackThatIsNoVideoTakesThePictureAway) {
    record({track(screen, red), track(camera, blue), {.typeCode = screen, .pixelAt = {}, .kind = audioKind}});
    expectColors(thumbnail(), blue, blue);
}

TEST_F(MoskThumbnail, IsNullWithoutScreenAndCamera) {
    record({sound(microphone), track(0, green)});
    EXPECT_FALSE(thumbnail());
    record({});
    EXPECT_FALSE(thumbnail());
}

TEST_F(MoskThumbnail, ATrackOfTheScreenShowsTheScreenAlone) {
    record({track(screen, red), track(camera, blue), sound(microphone)});
    expectColors(thumbnail(0), red, red);
    EXPECT_EQ(recordings.frameCalls.size(), 1U);
}

TEST_F(MoskThumbnail, ATrackOfTheCameraShowsTheCameraAlone) {
    record({track(screen, red), track(camera, blue), sound(microphone)});
    expectColors(thumbnail(1), blue, blue);
    EXPECT_EQ(recordings.frameCalls.size(), 1U);
}

TEST_F(MoskThumbnail, ATrackStandsForAllOfItsKind) {
    record({track(screen, red), track(screen, green)});
    expectColors(thumbnail(0), green, green); // the last of the kind, not the one that was named
}

TEST_F(MoskThumbnail, IsNullForATrackOfSound) {
    record({track(screen, red), sound(microphone)});
    EXPECT_FALSE(thumbnail(1));
}

TEST_F(MoskThumbnail, ATrackBehindTheLastOneAndOneOfNoTypeShowAll) {
    record({track(screen, red), track(camera, blue), track(0, green)});
    expectColors(thumbnail(2), red, blue);
    expectColors(thumbnail(3), red, blue);
    expectColors(thumbnail(-2), red, blue);
}

TEST_F(MoskThumbnail, AMemberNameTellsWhatIsShown) {
    record({track(screen, red), track(camera, blue)});
    const std::string name = file.string();
    expectColors(thumbnailOf(name + "!Cvideo0.mp4"), blue, blue);
    expectColors(thumbnailOf(name + "!Strack0.qrl2"), red, red);
    EXPECT_FALSE(thumbnailOf(name + "!Maudio0.mp4"));
}

TEST_F(MoskThumbnail, TheFileIsAskedForInUtf8WithTheOneFormatOfSound) {
    const std::filesystem::path named = folder.write("f\xC3\xBCr \xE6\x98\xA0.mosk", "content");
    thumbnailOf(named);
    EXPECT_THAT(recordings.requests, ElementsAre(RecordingRequest{named.string(), 44100, 2, false}));
}

TEST_F(MoskThumbnail, OfAMemberTheContainerIsAskedFor) {
    thumbnailOf(folder / "recording.zip!Cvideo0.mp4");
    EXPECT_THAT(recordings.requests,
                ElementsAre(RecordingRequest{(folder / "recording.zip").string(), 44100, 2, false}));
}

TEST_F(MoskThumbnail, ATrackIsAskedForItsFrameAtTheTime) {
    record({track(screen, red, 20, 10)});
    thumbnailOf(file, anyTrack, 2.345);
    EXPECT_THAT(recordings.frameCalls, ElementsAre(FrameCall{2.345, 20 * 10 * 4, false}));
}

TEST_F(MoskThumbnail, RowsStayInTheirOrder) {
    record({{screen, 20, 10, [](int x, int y) { return y < 5 ? red : x < 10 ? green : blue; }}});
    const Picture shown = thumbnail();
    ASSERT_TRUE(shown);
    EXPECT_EQ(pixelOf(*shown, 19, 4), red);
    EXPECT_EQ(pixelOf(*shown, 9, 5), green);
    EXPECT_EQ(pixelOf(*shown, 10, 9), blue);
}

TEST_F(MoskThumbnail, AFrameThatCannotBeDecodedIsTransparentAndThere) {
    record({{.typeCode = screen, .width = 20, .height = 10, .pixelAt = {}}, track(camera, blue)});
    const Picture shown = thumbnail();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->GetWidth(), 20U);
    expectColors(shown, 0, blue);
}

TEST_F(MoskThumbnail, IsFittedIntoTheBox) {
    record({track(screen, red), track(camera, blue)});
    const Picture small = thumbnailOf(file, anyTrack, 0, 82, 82);
    expectColors(small, red, blue);
    EXPECT_EQ(small->GetWidth(), 82U);
    EXPECT_EQ(small->GetHeight(), 46U);
    EXPECT_EQ(thumbnailOf(file, anyTrack, 0, 1000, 1000)->GetWidth(), 164U);
}

TEST_F(MoskThumbnail, AMissingFileIsNullAndNotOpened) {
    EXPECT_FALSE(thumbnailOf(""));
    EXPECT_FALSE(thumbnailOf(folder / "missing.mosk"));
    EXPECT_FALSE(thumbnailOf(folder / "missing.MOSK", 0));
    EXPECT_THAT(recordings.requests, IsEmpty());
}

TEST_F(MoskThumbnail, AFileThatIsNoRecordingIsNull) {
    EXPECT_FALSE(thumbnail());
    EXPECT_FALSE(thumbnail(0));
}

TEST_F(MoskThumbnail, WhatTheReaderThrowsPassesThrough) {
    recordings.onOpen = [](const std::string&) { throw std::runtime_error("reader"); };
    EXPECT_THROW(thumbnail(), std::runtime_error);
}

} // namespace KestoThumbnailer
