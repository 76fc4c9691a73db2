#include "scheduling/ThumbnailLoaderJob.h"

#include "scheduling/IThumbnailLoaderGdiplusBitmapCallback.h"
#include "scheduling/IThumbnailLoaderGdiplusBitmapCallbackForSavingtoFile.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <type_traits>

namespace KestoThumbnailer {

namespace {

using Media = boost::shared_ptr<const KestoMediaLib::Media>;
using Project = boost::shared_ptr<KestoMediaLib::Project>;

constexpr double epsilon = std::numeric_limits<double>::epsilon();

/// A pointer that owns nothing and is never looked into: the job knows media and projects by pointer alone.
template <class T>
boost::shared_ptr<T> at(const char& place) {
    return {boost::shared_ptr<void>(), reinterpret_cast<T*>(const_cast<char*>(&place))};
}

constexpr char places[4] = {};
const Media firstMedia = at<const KestoMediaLib::Media>(places[0]);
const Media secondMedia = at<const KestoMediaLib::Media>(places[1]);

struct NoCallback final : IThumbnailLoaderGdiplusBitmapCallback {
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap**, const ThumbnailLoaderJob&) override {}
};

/// No field has its default.
ThumbnailLoaderJob filledJob() {
    static NoCallback callback;
    ThumbnailLoaderJob job;
    job.width = 164;
    job.height = 120;
    job.outputFilePath = "out.png";
    job.callback = &callback;
    job.thumbnailKey = "key";
    job.dedupeId = std::int64_t{1} << 40;
    job.mediaPath = "media.mp4";
    job.projectJson = "{}";
    job.projectBasePath = "base";
    job.times = {0.5, 1.5};
    job.useSpriteSheet = false;
    job.project = at<KestoMediaLib::Project>(places[2]);
    job.sourceKind = SourceCallout;
    job.zoomRect = {1.0, 2.0, 3.0, 4.0};
    job.zoomWidth = 640;
    job.zoomHeight = 360;
    job.mediaToRender = {firstMedia, secondMedia};
    job.opaqueValue = 0xFFFFFFFFFFFFFFFFU;
    job.userData = "user";
    job.trackIndex = 3;
    return job;
}

void expectDefaults(const ThumbnailLoaderJob& job) {
    EXPECT_EQ(job.width, 0);
    EXPECT_EQ(job.height, 92);
    EXPECT_EQ(job.outputFilePath, "");
    EXPECT_EQ(job.callback, nullptr);
    EXPECT_EQ(job.thumbnailKey, "");
    EXPECT_EQ(job.dedupeId, 0);
    EXPECT_EQ(job.mediaPath, "");
    EXPECT_EQ(job.projectJson, "");
    EXPECT_EQ(job.projectBasePath, "");
    EXPECT_TRUE(job.times.empty());
    EXPECT_TRUE(job.useSpriteSheet);
    EXPECT_FALSE(job.project);
    EXPECT_EQ(job.sourceKind, SourceProject);
    EXPECT_EQ(job.zoomRect.x, 0);
    EXPECT_EQ(job.zoomRect.y, 0);
    EXPECT_EQ(job.zoomRect.width, 0);
    EXPECT_EQ(job.zoomRect.height, 0);
    EXPECT_EQ(job.zoomWidth, 0);
    EXPECT_EQ(job.zoomHeight, 0);
    EXPECT_TRUE(job.mediaToRender.empty());
    EXPECT_EQ(job.opaqueValue, 0U);
    EXPECT_EQ(job.userData, "");
    EXPECT_EQ(job.trackIndex, -1);
}

struct Change {
    const char* name;
    std::function<void(ThumbnailLoaderJob&)> apply;
};

void PrintTo(const Change& change, std::ostream* out) {
    *out << change.name;
}

const Change changesThatCount[] = {
    {"width", [](auto& job) { ++job.width; }},
    {"height", [](auto& job) { ++job.height; }},
    {"outputFilePath", [](auto& job) { job.outputFilePath = "OUT.png"; }},
    {"callback", [](auto& job) { job.callback = nullptr; }},
    {"thumbnailKey", [](auto& job) { job.thumbnailKey += ' '; }},
    {"dedupeId", [](auto& job) { job.dedupeId = 0; }},
    {"mediaPath", [](auto& job) { job.mediaPath.clear(); }},
    {"projectJson", [](auto& job) { job.projectJson = "[]"; }},
    {"projectBasePath", [](auto& job) { job.projectBasePath = "other"; }},
    {"oneTime", [](auto& job) { job.times[1] = 1.5000001; }},
    {"countOfTimes", [](auto& job) { job.times.pop_back(); }},
    {"useSpriteSheet", [](auto& job) { job.useSpriteSheet = true; }},
    {"project", [](auto& job) { job.project = at<KestoMediaLib::Project>(places[3]); }},
    {"sourceKind", [](auto& job) { job.sourceKind = SourceImage; }},
    {"zoomX", [](auto& job) { job.zoomRect.x += 0.001; }},
    {"zoomY", [](auto& job) { job.zoomRect.y -= 0.001; }},
    {"zoomRectWidth", [](auto& job) { job.zoomRect.width += 0.001; }},
    {"zoomRectHeight", [](auto& job) { job.zoomRect.height -= 0.001; }},
    {"zoomWidth", [](auto& job) { ++job.zoomWidth; }},
    {"zoomHeight", [](auto& job) { ++job.zoomHeight; }},
    {"oneOfMediaToRender", [](auto& job) { job.mediaToRender.back() = firstMedia; }},
    {"countOfMediaToRender", [](auto& job) { job.mediaToRender.pop_back(); }},
    {"userData", [](auto& job) { job.userData.clear(); }},
    {"trackIndex", [](auto& job) { job.trackIndex = -1; }},
};

class ThumbnailLoaderJobChange : public ::testing::TestWithParam<Change> {};

/// Two jobs that differ in one side of `zoomRect`, which is 0 in one of them.
void expectSideComparedWithin(double KestoMediaLib::Rect<double>::*side) {
    ThumbnailLoaderJob job;
    ThumbnailLoaderJob other;
    other.zoomRect.*side = epsilon / 2;
    EXPECT_TRUE(job == other);
    other.zoomRect.*side = -epsilon / 2;
    EXPECT_TRUE(job == other);
    other.zoomRect.*side = epsilon;
    EXPECT_FALSE(job == other);
    other.zoomRect.*side = -epsilon;
    EXPECT_FALSE(job == other);
}

} // namespace

TEST(ThumbnailLoaderJob, IsMadeWithDefaults) {
    expectDefaults(ThumbnailLoaderJob());
}

TEST(ThumbnailLoaderJob, ResetPutsEveryFieldToItsDefault) {
    ThumbnailLoaderJob job = filledJob();
    job.Reset();
    expectDefaults(job);
}

TEST(ThumbnailLoaderJob, HasAVirtualOperationButNoVirtualDestructor) {
    EXPECT_TRUE(std::is_polymorphic_v<ThumbnailLoaderJob>);
    EXPECT_FALSE(std::has_virtual_destructor_v<ThumbnailLoaderJob>);
}

TEST(ThumbnailLoaderJob, NumbersTheKindsOfSourceFromZero) {
    EXPECT_EQ(static_cast<int>(SourceProject), 0);
    EXPECT_EQ(static_cast<int>(SourceVideo), 1);
    EXPECT_EQ(static_cast<int>(SourceImage), 2);
    EXPECT_EQ(static_cast<int>(SourceCallout), 3);
}

TEST(ThumbnailLoaderJob, ACopyIsEqualAndCarriesTheOpaqueValue) {
    const ThumbnailLoaderJob job = filledJob();
    const ThumbnailLoaderJob copy = job; // NOLINT(performance-unnecessary-copy-initialization): the subject
    EXPECT_TRUE(copy == job);
    EXPECT_EQ(copy.opaqueValue, job.opaqueValue);
}

TEST(ThumbnailLoaderJob, ACopySharesProjectAndMediaAndNothingElse) {
    const ThumbnailLoaderJob job = filledJob();
    ThumbnailLoaderJob copy = job;
    EXPECT_EQ(copy.project, job.project);
    EXPECT_EQ(copy.mediaToRender.front(), job.mediaToRender.front());
    copy.times[0] = 9.0;
    copy.mediaToRender.clear();
    EXPECT_EQ(job.times[0], 0.5);
    EXPECT_EQ(job.mediaToRender.size(), 2U);
}

TEST_P(ThumbnailLoaderJobChange, MakesJobsUnequalBothWays) {
    const ThumbnailLoaderJob job = filledJob();
    ThumbnailLoaderJob other = job;
    GetParam().apply(other);
    EXPECT_FALSE(job == other);
    EXPECT_FALSE(other == job);
}

INSTANTIATE_TEST_SUITE_P(EachField, ThumbnailLoaderJobChange, ::testing::ValuesIn(changesThatCount),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ThumbnailLoaderJob, TheOpaqueValueTakesNoPartInComparison) {
    const ThumbnailLoaderJob job = filledJob();
    ThumbnailLoaderJob other = job;
    other.opaqueValue = 1;
    EXPECT_TRUE(job == other);
}

TEST(ThumbnailLoaderJob, OneWithANaNAmongItsTimesIsUnequalToItself) {
    ThumbnailLoaderJob job = filledJob();
    job.times[1] = std::numeric_limits<double>::quiet_NaN();
    const ThumbnailLoaderJob copy = job; // NOLINT(performance-unnecessary-copy-initialization): the subject
    EXPECT_FALSE(job == copy);
    EXPECT_FALSE(job == job);
}

TEST(ThumbnailLoaderJob, OneWithANaNInItsZoomRectIsUnequalToItself) {
    ThumbnailLoaderJob job = filledJob();
    job.zoomRect.height = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(job == job);
}

TEST(ThumbnailLoaderJob, ZoomRectsAreEqualBelowTheEpsilonOfDouble) {
    expectSideComparedWithin(&KestoMediaLib::Rect<double>::x);
    expectSideComparedWithin(&KestoMediaLib::Rect<double>::y);
    expectSideComparedWithin(&KestoMediaLib::Rect<double>::width);
    expectSideComparedWithin(&KestoMediaLib::Rect<double>::height);
}

TEST(ThumbnailLoaderJob, TheSameMediaInAnotherOrderMakeJobsUnequal) {
    const ThumbnailLoaderJob job = filledJob();
    ThumbnailLoaderJob other = job;
    other.mediaToRender.reverse();
    EXPECT_FALSE(job == other);
}

TEST(ThumbnailLoaderJob, IsAZoomJobWhenBothSizesAreAtLeastOne) {
    const auto isZoom = [](int width, int height) {
        ThumbnailLoaderJob job;
        job.zoomWidth = width;
        job.zoomHeight = height;
        return IsZoomJob(job);
    };
    EXPECT_TRUE(isZoom(1, 1));
    EXPECT_TRUE(isZoom(640, 360));
    EXPECT_FALSE(isZoom(0, 0));
    EXPECT_FALSE(isZoom(0, 1));
    EXPECT_FALSE(isZoom(1, 0));
    EXPECT_FALSE(isZoom(-5, 10));
    EXPECT_FALSE(isZoom(10, -5));
}

TEST(ThumbnailLoaderJob, ItsCallbacksAreNeverDestroyedThroughTheirInterfaces) {
    EXPECT_FALSE(std::is_destructible_v<IThumbnailLoaderGdiplusBitmapCallback>);
    EXPECT_FALSE(std::is_destructible_v<IThumbnailLoaderGdiplusBitmapCallbackForSavingtoFile>);
}

} // namespace KestoThumbnailer
