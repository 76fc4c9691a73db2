#include "scheduling/LoaderFixture.h"

#include "support/renderer/DrawnCallouts.h"
#include "support/renderer/RenderScript.h"
#include "support/renderer/TestCallout.h"
#include "support/renderer/TestProject.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace KestoThumbnailer {

namespace {

using ::testing::IsEmpty;
using TestSupport::Arrival;
using TestSupport::burntIn;
using TestSupport::DrawnCallout;
using TestSupport::makeTestCallout;
using TestSupport::makeTestMedia;
using TestSupport::pixelOf;
using TestSupport::wideOf;

class CalloutThumbnails : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob job(std::vector<double> times = {0.0}) {
        ThumbnailLoaderJob made;
        made.sourceKind = SourceCallout;
        made.callback = &pictures;
        made.thumbnailKey = "callout";
        made.width = 40;
        made.height = 40;
        made.times = std::move(times);
        made.mediaToRender = {callout, makeTestMedia()};
        return made;
    }

    boost::shared_ptr<const KestoMediaLib::Callout> callout = makeTestCallout({.width = 400, .height = 200});
    TestSupport::DrawnCallouts callouts;
};

} // namespace

TEST_F(CalloutThumbnails, TheFirstMediaIsDrawnWithinTheBounds) {
    ThumbnailLoader loader;
    const ThumbnailLoaderJob asked = job();
    ASSERT_TRUE(loader.GetThumbnailAsync(asked));
    const Arrival arrived = pictures.await(1)[0];
    EXPECT_EQ(arrived.bitmap->GetWidth(), 40U);
    EXPECT_EQ(arrived.bitmap->GetHeight(), 20U);
    EXPECT_EQ(pixelOf(*arrived.bitmap, 20, 10), burntIn(0));
    EXPECT_EQ(callouts.drawn().at(0).callout, callout);
    EXPECT_TRUE(arrived.job == asked);
}

TEST_F(CalloutThumbnails, EachPictureIsSavedUnderItsPath) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob saved = job({0.0, 1.0});
    saved.useSpriteSheet = false;
    saved.outputFilePath = (folder / "callout.png").string();
    loader.GetThumbnailAsync(saved);
    pictures.await(2);
    Gdiplus::Bitmap first(wideOf(folder / "callout.png").c_str());
    Gdiplus::Bitmap second(wideOf(folder / "callout_1.png").c_str());
    EXPECT_EQ(pixelOf(first, 20, 10), burntIn(0));
    EXPECT_EQ(pixelOf(second, 20, 10), burntIn(0));
}

TEST_F(CalloutThumbnails, WithoutACallbackNothingIsDrawnOrSaved) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob unheard = job();
    unheard.callback = nullptr;
    unheard.outputFilePath = (folder / "callout.png").string();
    loader.GetThumbnailAsync(unheard);
    drain(loader);
    EXPECT_THAT(callouts.drawn(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(unheard.outputFilePath));
}

TEST_F(CalloutThumbnails, AMediaThatIsNoCalloutIsPassedOverInSilence) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob wrong = job();
    wrong.mediaToRender.reverse();
    loader.GetThumbnailAsync(wrong);
    drain(loader);
    EXPECT_THAT(callouts.drawn(), IsEmpty());
    EXPECT_EQ(pictures.count(), 0U);
}

TEST_F(CalloutThumbnails, WithoutMediaThereIsNoCallout) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob ofProject = projectJob("callout");
    ofProject.sourceKind = SourceCallout;
    EXPECT_TRUE(loader.GetThumbnailAsync(ofProject));
    drain(loader);
    EXPECT_EQ(pictures.count(), 0U);
}

TEST_F(CalloutThumbnails, ACalloutThatDrawsNothingIsNeitherSavedNorDelivered) {
    ThumbnailLoader loader;
    callouts.draw = [](const DrawnCallout&) { return boost::shared_ptr<KestoRenderLib::MetaBitmap>(); };
    ThumbnailLoaderJob blank = job();
    blank.outputFilePath = (folder / "callout.png").string();
    loader.GetThumbnailAsync(blank);
    drain(loader);
    EXPECT_EQ(callouts.drawn().size(), 1U);
    EXPECT_EQ(pictures.count(), 0U);
    EXPECT_FALSE(std::filesystem::exists(blank.outputFilePath));
}

TEST_F(CalloutThumbnails, EqualRequestsThatArePendingAreDrawnOnce) {
    ThumbnailLoader loader;
    const ThumbnailLoaderJob twice = job();
    occupy(loader);
    loader.GetThumbnailAsync(twice);
    loader.GetThumbnailAsync(twice);
    gate.open();
    drain(loader);
    EXPECT_EQ(callouts.drawn().size(), 1U);
    EXPECT_EQ(pictures.count(), 1U);
}

TEST_F(CalloutThumbnails, TheLoadersProjectStaysWhatItWas) {
    ThumbnailLoader loader;
    occupy(loader);
    loader.GetThumbnailAsync(projectJob("frame", {1.0}));
    loader.GetThumbnailAsync(job());
    gate.open();
    EXPECT_EQ(pixelOf(*pictures.await(2)[0].bitmap, 0, 0), burntIn(30, 0));
}

} // namespace KestoThumbnailer
