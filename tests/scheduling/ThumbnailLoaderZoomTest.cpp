#include "scheduling/LoaderFixture.h"

#include "support/renderer/TestProject.h"

#include <filesystem>
#include <limits>

namespace KestoThumbnailer {

namespace {

using TestSupport::Arrival;
using TestSupport::makeTestProject;
using TestSupport::pixelOf;
using TestSupport::TestProject;
using TestSupport::TimelineCall;
using TestSupport::wideOf;
using Rate = boost::rational<unsigned long>;

constexpr Gdiplus::ARGB transparent = 0;

/// Where a pixel lies on the frame, as a colour.
Gdiplus::ARGB placed(int x, int y) {
    return 0xFF000000U | static_cast<Gdiplus::ARGB>(x << 8) | static_cast<Gdiplus::ARGB>(y);
}

void paintPlaces(KestoRenderLib::MetaBitmap& frame, const TimelineCall&) {
    for (int y = 0; y < frame.GetHeight(); ++y) {
        auto* row = reinterpret_cast<Gdiplus::ARGB*>(frame.GetPixels() +
                                                     static_cast<std::ptrdiff_t>(y) * frame.GetStride());
        for (int x = 0; x < frame.GetWidth(); ++x)
            row[x] = placed(x, y);
    }
}

class ZoomThumbnails : public TestSupport::LoaderFixture {
protected:
    /// Small frames, for which the grabber must have rendered the canvas first.
    boost::shared_ptr<TestProject> placesOn(ThumbnailLoader& loader, int width, int height) {
        const auto project = makeTestProject(static_cast<float>(width), static_cast<float>(height));
        project->script->paint = paintPlaces;
        ThumbnailLoaderJob plain = projectJob("plain");
        plain.project = project;
        loader.GetThumbnailAsync(plain);
        pictures.await(1);
        pictures.clear();
        return project;
    }

    ThumbnailLoaderJob zoomJob(boost::shared_ptr<TestProject> project, int width, int height) {
        ThumbnailLoaderJob job = projectJob("zoom");
        job.project = std::move(project);
        job.zoomWidth = width;
        job.zoomHeight = height;
        job.zoomRect = {0, 0, 10, 10};
        return job;
    }

    __int64 frameNumberAt(double time, const Rate& rate) {
        ThumbnailLoader loader;
        const auto project = makeTestProject(4, 4, rate);
        project->script->rendersNothing = true;
        ThumbnailLoaderJob job = zoomJob(project, 2, 2);
        job.times = {time};
        loader.GetThumbnailAsync(job);
        drain(loader);
        return project->script->renderedFrames().at(0);
    }
};

} // namespace

TEST_F(ZoomThumbnails, ThePictureIsTheMiddleOfTheFrameAtItsNaturalSize) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(zoomJob(placesOn(loader, 20, 12), 8, 4));
    const auto bitmap = pictures.await(1)[0].bitmap;
    ASSERT_EQ(bitmap->GetWidth(), 8U);
    ASSERT_EQ(bitmap->GetHeight(), 4U);
    EXPECT_EQ(pixelOf(*bitmap, 0, 0), placed(6, 4));
    EXPECT_EQ(pixelOf(*bitmap, 7, 3), placed(13, 7));
}

TEST_F(ZoomThumbnails, HalvesOfOddSizesAreCutTowardZero) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(zoomJob(placesOn(loader, 21, 11), 8, 5));
    const auto bitmap = pictures.await(1)[0].bitmap;
    EXPECT_EQ(pixelOf(*bitmap, 0, 0), placed(10 - 4, 5 - 2));
    EXPECT_EQ(pixelOf(*bitmap, 7, 4), placed(13, 7));
}

TEST_F(ZoomThumbnails, APictureLargerThanTheFrameIsTransparentAroundIt) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(zoomJob(placesOn(loader, 6, 4), 10, 8));
    const auto bitmap = pictures.await(1)[0].bitmap;
    ASSERT_EQ(bitmap->GetWidth(), 10U);
    EXPECT_EQ(pixelOf(*bitmap, 1, 2), transparent);
    EXPECT_EQ(pixelOf(*bitmap, 2, 1), transparent);
    EXPECT_EQ(pixelOf(*bitmap, 2, 2), placed(0, 0));
    EXPECT_EQ(pixelOf(*bitmap, 7, 5), placed(5, 3));
    EXPECT_EQ(pixelOf(*bitmap, 8, 6), transparent);
}

TEST_F(ZoomThumbnails, ThePictureIsOf32BitsWithAlpha) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(zoomJob(placesOn(loader, 6, 4), 2, 2));
    EXPECT_EQ(pictures.await(1)[0].bitmap->GetPixelFormat(), PixelFormat32bppARGB);
}

TEST_F(ZoomThumbnails, TheRegionIsRenderedIntoTheMiddleAndTheRestHalfThere) {
    ThumbnailLoader loader;
    const auto project = placesOn(loader, 20, 12);
    ThumbnailLoaderJob job = zoomJob(project, 8, 4);
    job.zoomRect = {-2, -1, 4, 2};
    loader.GetThumbnailAsync(job);
    pictures.await(1);
    const TimelineCall pass = project->script->passes().back();
    EXPECT_EQ(pass.canvasRect, KestoRenderLib::Rect(6, 4, 14, 8));
    EXPECT_EQ(pass.outsideOpacity, 128);
    EXPECT_FALSE(pass.clipToCanvas);
    const auto corner = pass.transform * KestoMediaLib::Point(-2, -1, 0);
    EXPECT_EQ(corner.x, -4);
    EXPECT_EQ(corner.y, -2);
}

TEST_F(ZoomThumbnails, BoundsOfThePictureHaveNoEffect) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = zoomJob(placesOn(loader, 20, 12), 8, 4);
    job.width = 2;
    job.height = 2;
    loader.GetThumbnailAsync(job);
    EXPECT_EQ(pictures.await(1)[0].bitmap->GetWidth(), 8U);
}

TEST_F(ZoomThumbnails, FrameNumbersAreCutTowardZero) {
    EXPECT_EQ(frameNumberAt(1.0, Rate(30000, 1001)), 29);
    EXPECT_EQ(frameNumberAt(0.999, Rate(30)), 29);
    EXPECT_EQ(frameNumberAt(-0.05, Rate(30)), -1);
}

TEST_F(ZoomThumbnails, TimesBeyondAnyFrameAreHeldAtTheEnd) {
    EXPECT_EQ(frameNumberAt(1e300, Rate(30)), std::numeric_limits<__int64>::max());
    EXPECT_EQ(frameNumberAt(-1e300, Rate(30)), std::numeric_limits<__int64>::min());
    EXPECT_EQ(frameNumberAt(std::numeric_limits<double>::quiet_NaN(), Rate(30)), 0);
}

TEST_F(ZoomThumbnails, AnEmptyFrameIsNoPicture) {
    ThumbnailLoader loader;
    const auto project = placesOn(loader, 6, 4);
    project->script->rendersNothing = true;
    loader.GetThumbnailAsync(zoomJob(project, 2, 2));
    drain(loader);
    EXPECT_EQ(project->script->passes().size(), 2U);
    EXPECT_EQ(pictures.count(), 0U);
}

TEST_F(ZoomThumbnails, ThePictureIsSavedAndThenDelivered) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = zoomJob(placesOn(loader, 20, 12), 8, 4);
    job.outputFilePath = (folder / "zoom.png").string();
    loader.GetThumbnailAsync(job);
    pictures.await(1);
    Gdiplus::Bitmap file(wideOf(folder / "zoom.png").c_str());
    EXPECT_EQ(pixelOf(file, 0, 0), placed(6, 4));
}

TEST_F(ZoomThumbnails, ABurstOfThemIsOnePictureOfTheNewest) {
    ThumbnailLoader loader;
    const auto project = placesOn(loader, 20, 12);
    occupy(loader);
    for (int width = 1; width <= 9; ++width)
        loader.GetThumbnailAsync(zoomJob(project, width, 4));
    gate.open();
    drain(loader);
    ASSERT_EQ(pictures.count(), 1U);
    EXPECT_EQ(pictures.arrivals()[0].bitmap->GetWidth(), 9U);
}

TEST_F(ZoomThumbnails, ACommandWithoutAProjectMakesNothing) {
    ThumbnailLoader loader;
    placesOn(loader, 6, 4);
    drain(loader);
    ThumbnailLoader::HandleThreadCommand(&loader, {ThumbCmdProjectFrame, zoomJob(nullptr, 2, 2), 0});
    EXPECT_EQ(pictures.count(), 0U);
}

} // namespace KestoThumbnailer
