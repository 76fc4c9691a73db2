#include "scheduling/LoaderFixture.h"

#include "platform/KestoRenderLib.h"

#include <boost/any.hpp>
#include <gmock/gmock.h>

#include <string>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::KestoRenderLibException;
using ::testing::ElementsAre;

THUMB_THREADCMD commandOf(std::int32_t kind, const ThumbnailLoaderJob& job = {}, std::uint64_t tag = 0) {
    return {kind, job, tag};
}

const ThumbnailLoaderJob& jobOf(const THUMB_THREADCMD& command) {
    return boost::any_cast<const ThumbnailLoaderJob&>(command.data);
}

ThumbnailLoaderJob jobWithId(std::int64_t id, const std::string& key) {
    ThumbnailLoaderJob job;
    job.dedupeId = id;
    job.thumbnailKey = key;
    return job;
}

ThumbnailLoaderJob zoomJob(const std::string& key) {
    ThumbnailLoaderJob job;
    job.zoomWidth = 1;
    job.zoomHeight = 1;
    job.thumbnailKey = key;
    return job;
}

/// The key of the job that `taken` has in the end, or "kept" when it stands for itself alone.
std::string outcomeOf(THUMB_THREADCMD taken, THUMB_THREADCMD queued) {
    return ThumbnailLoader::PruneDuplicateCommand(taken, queued) ? jobOf(taken).thumbnailKey : "kept";
}

std::string outcomeOf(const ThumbnailLoaderJob& older, const ThumbnailLoaderJob& newer) {
    return outcomeOf(commandOf(ThumbCmdProjectFrame, older), commandOf(ThumbCmdProjectFrame, newer));
}

std::string refusalOf(THUMB_THREADCMD taken, THUMB_THREADCMD queued) {
    try {
        ThumbnailLoader::PruneDuplicateCommand(taken, queued);
        return "nothing is thrown";
    } catch (const KestoRenderLibException& refusal) {
        return refusal.what();
    }
}

class PruningInALoader : public TestSupport::LoaderFixture {};

} // namespace

TEST(ThumbnailPruning, KindsBelowOneAreNeverDuplicates) {
    EXPECT_EQ(outcomeOf(commandOf(0), commandOf(0)), "kept");
    EXPECT_EQ(outcomeOf(commandOf(-1), commandOf(1)), "kept");
    EXPECT_EQ(outcomeOf(commandOf(1), commandOf(-1)), "kept");
    EXPECT_EQ(outcomeOf(commandOf(0), commandOf(6)), "kept");
    EXPECT_EQ(outcomeOf(commandOf(6), commandOf(0)), "kept");
}

TEST(ThumbnailPruning, UnknownKindsAreRefused) {
    const std::string refusal = "Bad command on the ThumbnailWorkerThread: can't prune";
    EXPECT_EQ(refusalOf(commandOf(6), commandOf(1)), refusal);
    EXPECT_EQ(refusalOf(commandOf(1), commandOf(6)), refusal);
    EXPECT_EQ(refusalOf(commandOf(5), commandOf(5)), "nothing is thrown");
}

TEST(ThumbnailPruning, APayloadThatIsNoJobIsRefused) {
    THUMB_THREADCMD job = commandOf(1);
    THUMB_THREADCMD number{2, 7, 0};
    THUMB_THREADCMD nothing{1, {}, 0};
    EXPECT_THROW(ThumbnailLoader::PruneDuplicateCommand(job, number), boost::bad_any_cast);
    EXPECT_THROW(ThumbnailLoader::PruneDuplicateCommand(number, job), boost::bad_any_cast);
    EXPECT_THROW(ThumbnailLoader::PruneDuplicateCommand(nothing, job), boost::bad_any_cast);
}

TEST(ThumbnailPruning, AnUnknownKindIsRefusedBeforeItsPayload) {
    EXPECT_EQ(refusalOf({6, 7, 0}, {6, 7, 0}), "Bad command on the ThumbnailWorkerThread: can't prune");
}

TEST(ThumbnailPruning, EqualJobsOfTwoKindsAreNoDuplicates) {
    EXPECT_EQ(outcomeOf(commandOf(ThumbCmdProjectFrame, jobWithId(7, "same")),
                        commandOf(ThumbCmdProjectSprite, jobWithId(7, "same"))),
              "kept");
    EXPECT_EQ(outcomeOf(commandOf(ThumbCmdProjectFrame, zoomJob("same")),
                        commandOf(ThumbCmdMediaFile, zoomJob("same"))),
              "kept");
}

TEST(ThumbnailPruning, EqualJobsOfEachKindAreDuplicates) {
    for (std::int32_t kind = ThumbCmdProjectFrame; kind <= ThumbCmdCallout; ++kind)
        EXPECT_EQ(outcomeOf(commandOf(kind, jobWithId(0, "same")), commandOf(kind, jobWithId(0, "same"))),
                  "same");
}

TEST(ThumbnailPruning, ANewerJobWithTheSameIdTakesThePlace) {
    EXPECT_EQ(outcomeOf(jobWithId(1, "older"), jobWithId(1, "newer")), "newer");
    EXPECT_EQ(outcomeOf(jobWithId(std::int64_t{1} << 40, "older"), jobWithId(std::int64_t{1} << 40, "newer")),
              "newer");
}

TEST(ThumbnailPruning, IdsBelowOneAndDifferentIdsDoNotFold) {
    EXPECT_EQ(outcomeOf(jobWithId(0, "older"), jobWithId(0, "newer")), "kept");
    EXPECT_EQ(outcomeOf(jobWithId(-1, "older"), jobWithId(-1, "newer")), "kept");
    EXPECT_EQ(outcomeOf(jobWithId(1, "same"), jobWithId(2, "same")), "kept");
}

TEST(ThumbnailPruning, ZoomJobsFoldWhateverElseDiffers) {
    ThumbnailLoaderJob older = zoomJob("older");
    older.dedupeId = 1;
    older.zoomRect = {0, 0, 10, 10};
    older.outputFilePath = "a.png";
    ThumbnailLoaderJob newer = zoomJob("newer");
    newer.dedupeId = 2;
    newer.zoomWidth = 99;
    newer.zoomRect = {5, 5, 1, 1};
    newer.outputFilePath = "b.png";
    EXPECT_EQ(outcomeOf(older, newer), "newer");
}

TEST(ThumbnailPruning, AZoomJobDoesNotFoldWithAPlainOne) {
    EXPECT_EQ(outcomeOf(zoomJob("zoom"), ThumbnailLoaderJob()), "kept");
    EXPECT_EQ(outcomeOf(ThumbnailLoaderJob(), zoomJob("zoom")), "kept");
    ThumbnailLoaderJob withoutHeight = zoomJob("zoom");
    withoutHeight.zoomHeight = 0;
    EXPECT_EQ(outcomeOf(zoomJob("zoom"), withoutHeight), "kept");
}

TEST(ThumbnailPruning, JobsThatDifferOnlyInTheOpaqueValueFoldToTheNewerOne) {
    ThumbnailLoaderJob older;
    older.opaqueValue = 1;
    ThumbnailLoaderJob newer;
    newer.opaqueValue = 2;
    THUMB_THREADCMD taken = commandOf(ThumbCmdCallout, older);
    THUMB_THREADCMD queued = commandOf(ThumbCmdCallout, newer);
    EXPECT_TRUE(ThumbnailLoader::PruneDuplicateCommand(taken, queued));
    EXPECT_EQ(jobOf(taken).opaqueValue, 2U);
}

TEST(ThumbnailPruning, TheCommandKeepsItsTagAndTheQueuedOneItsJob) {
    THUMB_THREADCMD taken = commandOf(ThumbCmdCallout, jobWithId(3, "older"), 11);
    THUMB_THREADCMD queued = commandOf(ThumbCmdCallout, jobWithId(3, "newer"), 22);
    EXPECT_TRUE(ThumbnailLoader::PruneDuplicateCommand(taken, queued));
    EXPECT_EQ(taken.tag, 11U);
    EXPECT_EQ(queued.tag, 22U);
    EXPECT_EQ(jobOf(queued).thumbnailKey, "newer");
}

TEST(ThumbnailPruning, WithoutAFoldNeitherCommandChanges) {
    THUMB_THREADCMD taken = commandOf(ThumbCmdCallout, jobWithId(3, "older"));
    THUMB_THREADCMD queued = commandOf(ThumbCmdCallout, jobWithId(4, "newer"));
    EXPECT_FALSE(ThumbnailLoader::PruneDuplicateCommand(taken, queued));
    EXPECT_EQ(jobOf(taken).thumbnailKey, "older");
    EXPECT_EQ(jobOf(queued).thumbnailKey, "newer");
}

TEST_F(PruningInALoader, ABurstWithOneIdIsOnePictureOfTheNewestInThePlaceOfTheOldest) {
    ThumbnailLoader loader;
    occupy(loader);
    for (const char* key : {"1 first", "1 second", "0 other", "1 third"}) {
        ThumbnailLoaderJob job = imageJob(key);
        job.dedupeId = key[0] - '0';
        loader.GetThumbnailAsync(job);
    }
    gate.open();
    drain(loader);
    EXPECT_THAT(pictures.keys(), ElementsAre("1 third", "0 other"));
}

TEST_F(PruningInALoader, WithoutPruningEveryJobRuns) {
    ThumbnailLoader loader(/*pruneDuplicates=*/false);
    occupy(loader);
    loader.GetThumbnailAsync(imageJob("same"));
    loader.GetThumbnailAsync(imageJob("same"));
    gate.open();
    drain(loader);
    EXPECT_THAT(pictures.keys(), ElementsAre("same", "same"));
}

TEST_F(PruningInALoader, EqualJobsAreOnePicture) {
    ThumbnailLoader loader;
    occupy(loader);
    loader.GetThumbnailAsync(imageJob("same"));
    loader.GetThumbnailAsync(imageJob("same"));
    gate.open();
    drain(loader);
    EXPECT_THAT(pictures.keys(), ElementsAre("same"));
}

} // namespace KestoThumbnailer
