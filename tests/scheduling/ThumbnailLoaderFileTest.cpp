#include "scheduling/LoaderFixture.h"

#include "platform/KestoRenderLib.h"
#include "support/recording/ScriptedRecordings.h"
#include "support/renderer/GeneratedProjects.h"
#include "support/renderer/TestProject.h"

#include <boost/any.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::KestoRenderLibException;
using TestSupport::Arrival;
using TestSupport::burntIn;
using TestSupport::GeneratedProjects;
using TestSupport::makeTestProject;
using TestSupport::pixelOf;
using TestSupport::ProjectOrigin;
using TestSupport::ProjectRequest;

constexpr Gdiplus::ARGB blue = 0xFF0000FF;

class FileThumbnails : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob videoJob(std::vector<double> times) {
        ThumbnailLoaderJob job = imageJob("video", std::move(times));
        job.mediaPath = folder.write("vidéo.mp4", "a video").string();
        job.sourceKind = SourceVideo;
        job.useSpriteSheet = false;
        return job;
    }
};

std::string refusalOf(ThumbnailLoader& loader, const THUMB_THREADCMD& command) {
    try {
        ThumbnailLoader::HandleThreadCommand(&loader, command);
        return "nothing is thrown";
    } catch (const KestoRenderLibException& refusal) {
        return refusal.what();
    }
}

} // namespace

TEST_F(FileThumbnails, AnImageComesWithinTheBounds) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = imageJob("image");
    job.width = 4;
    job.height = 4;
    ASSERT_TRUE(loader.GetThumbnailAsync(job));
    const Arrival arrived = pictures.await(1)[0];
    EXPECT_EQ(arrived.bitmap->GetWidth(), 4U);
    EXPECT_EQ(arrived.bitmap->GetHeight(), 2U);
    EXPECT_EQ(pixelOf(*arrived.bitmap, 0, 0), blue);
    EXPECT_TRUE(arrived.job == job);
}

TEST_F(FileThumbnails, AVideoIsAskedForEachTimeAt30FramesToTheSecond) {
    ThumbnailLoader loader;
    const GeneratedProjects projects([](const ProjectRequest&) { return makeTestProject(8, 4); });
    const ThumbnailLoaderJob job = videoJob({0.5, 2.0});
    loader.GetThumbnailAsync(job);
    const std::vector<Arrival> arrived = pictures.await(2);
    EXPECT_EQ(pixelOf(*arrived[0].bitmap, 0, 0), burntIn(15));
    EXPECT_EQ(pixelOf(*arrived[1].bitmap, 0, 0), burntIn(60));
    const ProjectRequest request = projects.requests().at(0);
    EXPECT_EQ(request.origin, ProjectOrigin::MediaFile);
    EXPECT_EQ(request.text, job.mediaPath);
    EXPECT_EQ(request.frameRate, boost::rational<unsigned long>(30));
}

TEST_F(FileThumbnails, ARecordingIsAskedForTheTrackAtTheTime) {
    TestSupport::ScriptedRecordings recordings;
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = videoJob({0.5});
    job.mediaPath = folder.write("recording.mosk", "a recording").string();
    job.trackIndex = 1;
    recordings.tracksOf[job.mediaPath] = {{100, 8, 4, [](int, int) { return 0xFFFF0000; }},
                                          {101, 8, 4, [](int, int) { return blue; }}};
    loader.GetThumbnailAsync(job);
    EXPECT_EQ(pixelOf(*pictures.await(1)[0].bitmap, 0, 0), blue);
    ASSERT_EQ(recordings.frameCalls.size(), 1U);
    EXPECT_EQ(recordings.frameCalls[0].seconds, 0.5);
}

TEST_F(FileThumbnails, ACommandWithoutTimesIsOfTimeZero) {
    ThumbnailLoader loader;
    const GeneratedProjects projects([](const ProjectRequest&) { return makeTestProject(8, 4); });
    ThumbnailLoader::HandleThreadCommand(&loader, {ThumbCmdMediaFile, videoJob({}), 0});
    EXPECT_EQ(pixelOf(*pictures.await(1)[0].bitmap, 0, 0), burntIn(0));
}

TEST_F(FileThumbnails, TheOldFileIsRemovedAndNoNewOneWritten) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = imageJob("image");
    job.outputFilePath = folder.write("old.png", "old").string();
    loader.GetThumbnailAsync(job);
    pictures.await(1);
    drain(loader);
    EXPECT_FALSE(std::filesystem::exists(job.outputFilePath));
}

TEST_F(FileThumbnails, OtherKindsOfSourceMakeNothing) {
    ThumbnailLoader loader;
    for (const ThumbnailSourceKind kind : {SourceProject, SourceCallout}) {
        ThumbnailLoaderJob job = imageJob("other");
        job.sourceKind = kind;
        ThumbnailLoader::HandleThreadCommand(&loader, {ThumbCmdMediaFile, job, 0});
    }
    EXPECT_EQ(pictures.count(), 0U);
}

TEST_F(FileThumbnails, AFileThatShowsNothingIsPassedOverInSilence) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob missing = imageJob("missing");
    missing.mediaPath = (folder / "missing.png").string();
    loader.GetThumbnailAsync(missing);
    loader.GetThumbnailAsync(videoJob({0.0}));
    drain(loader);
    EXPECT_EQ(pictures.count(), 0U);
}

TEST_F(FileThumbnails, AJobWithoutACallbackMakesItsPictureForNobody) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = imageJob("nobody");
    job.callback = nullptr;
    loader.GetThumbnailAsync(job);
    drain(loader);
    EXPECT_EQ(pictures.count(), 0U);
}

TEST_F(FileThumbnails, UnknownKindsOfCommandAreRefused) {
    ThumbnailLoader loader;
    const std::string refusal = "Bad command on the ThumbnailWorkerThread: can't handle";
    for (const std::int32_t kind : {-7, 0, 6, 1000})
        EXPECT_EQ(refusalOf(loader, {kind, imageJob("any"), 0}), refusal) << kind;
}

TEST_F(FileThumbnails, APayloadThatIsNoJobIsRefusedWhateverTheKind) {
    ThumbnailLoader loader;
    EXPECT_THROW(ThumbnailLoader::HandleThreadCommand(&loader, {ThumbCmdMediaFile, {}, 0}),
                 boost::bad_any_cast);
    EXPECT_THROW(ThumbnailLoader::HandleThreadCommand(&loader, {6, 7, 0}), boost::bad_any_cast);
}

TEST_F(FileThumbnails, TheLoadersOwnCallbackTakesNothingFromItsCaller) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = imageJob("handed on");
    loader.OnLoadedGdiPlusBitmapThumbnail(nullptr, job);
    Gdiplus::Bitmap* bitmap = nullptr;
    loader.OnLoadedGdiPlusBitmapThumbnail(&bitmap, job);
    EXPECT_EQ(pictures.count(), 0U);

    Gdiplus::Bitmap tile(4, 4, PixelFormat32bppARGB);
    bitmap = &tile;
    job.callback = nullptr;
    loader.OnLoadedGdiPlusBitmapThumbnail(&bitmap, job);
    job.sourceKind = SourceProject;
    loader.OnLoadedGdiPlusBitmapThumbnail(&bitmap, job); // there is no sheet
    EXPECT_EQ(bitmap, &tile);
}

TEST_F(FileThumbnails, TheLoaderHandsPicturesOfFilesOnToTheirCallback) {
    ThumbnailLoader loader;
    auto* bitmap = new Gdiplus::Bitmap(4, 4, PixelFormat32bppARGB);
    const Gdiplus::Bitmap* const handed = bitmap;
    loader.OnLoadedGdiPlusBitmapThumbnail(&bitmap, imageJob("handed on"));
    EXPECT_EQ(bitmap, nullptr);
    EXPECT_EQ(pictures.arrivals().at(0).bitmap.get(), handed);
    EXPECT_EQ(pictures.arrivals().at(0).job.thumbnailKey, "handed on");
}

TEST_F(FileThumbnails, SavingLeavesTheBitmapToItsCaller) {
    ThumbnailLoader loader;
    Gdiplus::Bitmap tile(4, 4, PixelFormat32bppARGB);
    Gdiplus::Bitmap* bitmap = &tile;
    const std::string path = (folder / "saved.png").string();
    loader.OnLoadedGdiPlusBitmapThumbnailForSavingToFile(&bitmap, path);
    EXPECT_EQ(bitmap, &tile);
    EXPECT_TRUE(std::filesystem::exists(path));

    loader.OnLoadedGdiPlusBitmapThumbnailForSavingToFile(&bitmap, "");
    loader.OnLoadedGdiPlusBitmapThumbnailForSavingToFile(nullptr, path);
    bitmap = nullptr;
    loader.OnLoadedGdiPlusBitmapThumbnailForSavingToFile(&bitmap, path);
}

} // namespace KestoThumbnailer
