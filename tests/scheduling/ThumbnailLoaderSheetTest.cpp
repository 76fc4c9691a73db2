#include "scheduling/LoaderFixture.h"

#include "support/renderer/TestProject.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace KestoThumbnailer {

namespace {

using ::testing::ElementsAre;
using TestSupport::Arrival;
using TestSupport::burntIn;
using TestSupport::makeTestMedia;
using TestSupport::makeTestProject;
using TestSupport::PictureRecorder;
using TestSupport::pixelOf;
using TestSupport::TestProject;
using TestSupport::wideOf;

class Sheets : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob sheetJob(std::vector<double> times) {
        ThumbnailLoaderJob job = projectJob("sheet", std::move(times));
        job.project = project;
        job.width = 8;
        job.height = 4;
        return job;
    }

    boost::shared_ptr<TestProject> project = makeTestProject(8, 4);
};

/// Asks for one sheet more from within the first one's callback.
class AskingAgain final : public IThumbnailLoaderGdiplusBitmapCallback {
public:
    AskingAgain(ThumbnailLoader& asked, ThumbnailLoaderJob nextJob)
        : loader(asked)
        , next(std::move(nextJob)) {}

    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap**, const ThumbnailLoaderJob&) override {
        loader.GetThumbnailAsync(next);
    }

private:
    ThumbnailLoader& loader;
    ThumbnailLoaderJob next;
};

} // namespace

TEST_F(Sheets, TheTimesAreTheTilesOfOnePicture) {
    ThumbnailLoader loader;
    ASSERT_TRUE(loader.GetThumbnailAsync(sheetJob({0.0, 1.0, 2.0})));
    const auto sheet = pictures.await(1)[0].bitmap;
    ASSERT_EQ(sheet->GetWidth(), 24U);
    ASSERT_EQ(sheet->GetHeight(), 4U);
    EXPECT_EQ(pixelOf(*sheet, 0, 0), burntIn(0));
    EXPECT_EQ(pixelOf(*sheet, 8, 0), burntIn(30));
    EXPECT_EQ(pixelOf(*sheet, 23, 3), burntIn(60));
}

TEST_F(Sheets, TilesLieInTheOrderOfTheTimesAsTheyStand) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(sheetJob({2.0, 0.0, 1.0}));
    const auto sheet = pictures.await(1)[0].bitmap;
    EXPECT_EQ(pixelOf(*sheet, 0, 0), burntIn(60));
    EXPECT_EQ(pixelOf(*sheet, 8, 0), burntIn(0));
    EXPECT_EQ(pixelOf(*sheet, 16, 0), burntIn(30));
}

TEST_F(Sheets, TilesLieWhereTheLoaderSays) {
    ThumbnailLoader loader(true, SpriteStyleGrid);
    loader.GetThumbnailAsync(sheetJob({0.0, 1.0, 2.0, 3.0}));
    const auto sheet = pictures.await(1)[0].bitmap;
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    loader.GetThumbnailRectInSpriteSheet(8, 4, 3, 4, left, top, right, bottom);
    EXPECT_EQ(top, 4);
    EXPECT_EQ(pixelOf(*sheet, left, top), burntIn(90));
    EXPECT_EQ(pixelOf(*sheet, right - 1, bottom - 1), burntIn(90));
}

TEST_F(Sheets, TheCallbackGetsOnePictureAndADefaultJob) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(sheetJob({0.0, 1.0}));
    pictures.await(1);
    drain(loader);
    ASSERT_EQ(pictures.count(), 1U);
    EXPECT_TRUE(pictures.arrivals()[0].job == ThumbnailLoaderJob());
}

TEST_F(Sheets, TheFileIsTheSheetAndEachFurtherTileLeavesOneWithItsNumber) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = sheetJob({0.0, 1.0, 2.0});
    job.outputFilePath = (folder / "Sheet.PNG").string();
    loader.GetThumbnailAsync(job);
    drain(loader);
    Gdiplus::Bitmap sheet(wideOf(folder / "Sheet.PNG").c_str());
    EXPECT_EQ(sheet.GetWidth(), 24U);
    EXPECT_EQ(pixelOf(sheet, 16, 0), burntIn(60));
    Gdiplus::Bitmap second(wideOf(folder / "sheet_1.png").c_str());
    EXPECT_EQ(second.GetWidth(), 8U);
    EXPECT_EQ(pixelOf(second, 0, 0), burntIn(30));
    Gdiplus::Bitmap third(wideOf(folder / "sheet_2.png").c_str());
    EXPECT_EQ(pixelOf(third, 0, 0), burntIn(60));
    EXPECT_FALSE(std::filesystem::exists(folder / "sheet_0.png"));
}

TEST_F(Sheets, AFileNeedsNoCallback) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = sheetJob({0.0, 1.0});
    job.callback = nullptr;
    job.outputFilePath = (folder / "sheet.png").string();
    loader.GetThumbnailAsync(job);
    drain(loader);
    Gdiplus::Bitmap sheet(wideOf(folder / "sheet.png").c_str());
    EXPECT_EQ(sheet.GetWidth(), 16U);
}

TEST_F(Sheets, TilesShowTheMediaToRender) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = sheetJob({0.0, 1.0});
    job.mediaToRender = {makeTestMedia()};
    loader.GetThumbnailAsync(job);
    EXPECT_EQ(pixelOf(*pictures.await(1)[0].bitmap, 8, 0), burntIn(30, 1));
}

TEST_F(Sheets, TilesAreMadeOnAThreadAndWithAGrabberOfTheirOwn) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob plain = sheetJob({1.0});
    loader.GetThumbnailAsync(plain);
    const Arrival picture = pictures.await(1)[0];
    loader.GetThumbnailAsync(sheetJob({0.0, 1.0}));
    const Arrival sheet = pictures.await(2)[1];
    EXPECT_NE(sheet.thread, picture.thread);
    EXPECT_EQ(project->script->passes().back().thread, sheet.thread);
    EXPECT_EQ(project->script->pipelines().size(), 2U);
}

TEST_F(Sheets, JobsBehindASheetComeAfterIt) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(sheetJob({0.0, 1.0}));
    loader.GetThumbnailAsync(imageJob("after it"));
    pictures.await(2);
    EXPECT_THAT(pictures.keys(), ElementsAre("", "after it"));
}

TEST_F(Sheets, OneSheetFollowsAnother) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(sheetJob({0.0, 1.0}));
    pictures.await(1);
    drain(loader);
    loader.GetThumbnailAsync(sheetJob({2.0, 3.0, 4.0}));
    const auto second = pictures.await(2)[1].bitmap;
    EXPECT_EQ(second->GetWidth(), 24U);
    EXPECT_EQ(pixelOf(*second, 16, 0), burntIn(120));
}

TEST_F(Sheets, EqualSheetsThatArePendingAreOne) {
    ThumbnailLoader loader;
    occupy(loader);
    loader.GetThumbnailAsync(sheetJob({0.0, 1.0}));
    loader.GetThumbnailAsync(sheetJob({0.0, 1.0}));
    gate.open();
    drain(loader);
    EXPECT_EQ(pictures.count(), 1U);
}

TEST_F(Sheets, ACallbackMayAskForTheNextSheet) {
    ThumbnailLoader loader;
    AskingAgain asking(loader, sheetJob({2.0, 3.0}));
    ThumbnailLoaderJob first = sheetJob({0.0, 1.0});
    first.callback = &asking;
    loader.GetThumbnailAsync(first);
    EXPECT_EQ(pixelOf(*pictures.await(1)[0].bitmap, 0, 0), burntIn(60));
}

TEST_F(Sheets, APendingSheetLosesItsPlaceToTheNextOne) {
    PictureRecorder second;
    {
        ThumbnailLoader loader;
        occupy(loader);
        loader.GetThumbnailAsync(sheetJob({0.0, 1.0}));
        ThumbnailLoaderJob next = sheetJob({2.0, 3.0});
        next.callback = &second;
        loader.GetThumbnailAsync(next);
        gate.open();
        const auto sheet = second.await(1)[0].bitmap;
        EXPECT_EQ(pixelOf(*sheet, 0, 0), burntIn(0));
        EXPECT_EQ(pixelOf(*sheet, 8, 0), burntIn(30));
    }
    EXPECT_EQ(pictures.count(), 0U);
    EXPECT_EQ(second.count(), 1U);
}

} // namespace KestoThumbnailer
