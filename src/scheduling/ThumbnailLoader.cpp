#include "scheduling/ThumbnailLoader.h"

#include "scheduling/IThumbnailLoaderFinishedCallback.h"
#include "scheduling/ThumbnailLoaderJob.h"
#include "scheduling/WorkerThreadManager.h"
#include "scheduling/imagefile/FileUtil.h"
#include "scheduling/imagefile/ImageHelper.h"
#include "scheduling/thumbnailloader/JobExpansion.h"
#include "scheduling/thumbnailloader/JobPictures.h"

#include "framegrab/ProjectFrameGrabber.h"
#include "platform/KestoRenderProject.h"

#include <boost/any.hpp>
#include <boost/make_shared.hpp>

#include <utility>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::KestoRenderLibException;
using KestoRenderLib::ProjectGenerator;

constexpr int outsideOpacityOfZoom = 128;

/// Ends the worker that takes it, as every negative kind does.
constexpr std::int32_t endOfTiles = -2;

/// A payload that signals `gone` with the end of its last copy.
boost::shared_ptr<void> SignalsItsEnd(Event& gone) {
    return {static_cast<void*>(nullptr), [&gone](void*) { gone.set(); }};
}

bool IsKnown(std::int32_t kind) {
    return kind >= ThumbCmdProjectFrame && kind <= ThumbCmdCallout;
}

bool Replaces(const ThumbnailLoaderJob& newer, const ThumbnailLoaderJob& older) {
    return (older.dedupeId >= 1 && older.dedupeId == newer.dedupeId) ||
           (IsZoomJob(older) && IsZoomJob(newer)) || older == newer;
}

/// To be asked before the job runs: a callback that wants no more than its picture may be gone after it.
IThumbnailLoaderFinishedCallback* WhomToTellOfTheEnd(const ThumbnailLoaderJob& job) {
    return dynamic_cast<IThumbnailLoaderFinishedCallback*>(job.callback);
}

} // namespace

ThumbnailLoader::ThumbnailLoader(bool pruneDuplicates, SpriteStyle style)
    : threadManager(boost::make_shared<WorkerThreadManager>())
    , spriteStyle(style) {
    spriteDoneEvent.set();
    threadManager->Start(HandleThreadCommand, this, "Thumbnail Loader");
    threadManager->SetPruning(pruneDuplicates, PruneDuplicateCommand);
}

ThumbnailLoader::ThumbnailLoader(boost::shared_ptr<IWorkerThreadManager> manager)
    : threadManager(std::move(manager))
    , spriteStyle(SpriteStyleRows) {
    spriteDoneEvent.set();
}

ThumbnailLoader::~ThumbnailLoader() {
    goingAway.set();
    spriteDoneEvent.set(); // after the other: a sheet that wakes must see why
    if (threadManager)
        threadManager->Stop(true);
}

void ThumbnailLoader::Pause() {
    paused.store(true, std::memory_order_relaxed);
}

void ThumbnailLoader::Resume() {
    paused.store(false, std::memory_order_relaxed);
}

bool ThumbnailLoader::IsPaused() {
    return paused.load(std::memory_order_relaxed);
}

void ThumbnailLoader::GetThumbnailRectInSpriteSheet(int thumbWidth, int thumbHeight, int index, int count,
                                                    int& left, int& top, int& right, int& bottom) {
    const CRect rect = SpriteComposer::RectForImage(index, count, thumbWidth, thumbHeight, spriteStyle);
    left = rect.left;
    top = rect.top;
    right = rect.right;
    bottom = rect.bottom;
}

bool ThumbnailLoader::GetThumbnailAsync(const ThumbnailLoaderJob& job) {
    const bool isCallout = job.sourceKind == SourceCallout;
    if (job.project || (isCallout && !job.mediaToRender.empty())) {
        FileUtil::SafeDeleteFile(job.outputFilePath);
        Queue(job, isCallout ? JobMode::Callout : JobMode::Project);
        return true;
    }
    if (!job.mediaPath.empty()) {
        FileUtil::SafeDeleteFile(job.outputFilePath);
        if (job.sourceKind == SourceProject)
            QueueProject(job, ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(job.mediaPath));
        else
            Queue(job, JobMode::File);
        return true;
    }
    if (!job.projectJson.empty()) {
        FileUtil::SafeDeleteFile(job.outputFilePath);
        QueueProject(
            job, ProjectGenerator::CreateProjectFromQrlprojJsonContent(job.projectJson, job.projectBasePath));
        return true;
    }
    return false;
}

void ThumbnailLoader::QueueProject(const ThumbnailLoaderJob& job,
                                   boost::shared_ptr<KestoMediaLib::Project> project) {
    if (!project)
        return; // Deliberate: the caller is not told.
    ThumbnailLoaderJob made = job;
    made.project = std::move(project);
    Queue(made, JobMode::Project);
}

void ThumbnailLoader::Queue(const ThumbnailLoaderJob& job, JobMode mode) {
    if (!threadManager)
        throw KestoRenderLibException("ThreadManager Has Not Been Initialized for ThumbnailLoader");
    if (IsSheetJob(job)) {
        QueueSheet(job, mode);
        return;
    }
    for (std::size_t index = 0; index < job.times.size(); ++index)
        QueuePicture(JobOfPicture(job, mode, index), mode);
}

void ThumbnailLoader::QueueSheet(const ThumbnailLoaderJob& job, JobMode mode) {
    if (mode == JobMode::Callout)
        return; // Deliberate: there is no sheet of callouts, and no picture in its place.
    {
        const RecursiveMutexLock held(spriteLock);
        spriteComposer =
            boost::make_shared<SpriteComposer>(job.width, job.height, static_cast<int>(job.times.size()),
                                               job.callback, job.outputFilePath, spriteStyle);
    }
    Push(mode == JobMode::Project ? ThumbCmdProjectSprite : ThumbCmdMediaSprite, job);
}

void ThumbnailLoader::QueuePicture(const ThumbnailLoaderJob& job, JobMode mode) {
    switch (mode) {
    case JobMode::Project:
        QueueProjectFrame(job);
        return;
    case JobMode::File:
        Push(ThumbCmdMediaFile, job);
        return;
    case JobMode::Callout:
        Push(ThumbCmdCallout, job);
        return;
    }
}

void ThumbnailLoader::QueueProjectFrame(const ThumbnailLoaderJob& job) {
    // In the end what was the loader's before: it goes without a lock, since its parts may be the caller's.
    boost::shared_ptr<KestoMediaLib::Project> project = job.project;
    boost::shared_ptr<ProjectFrameGrabber> grabber;
    auto media = job.mediaToRender;

    const MutexLock queueing(projectLock);
    if (project != currentProject) {
        grabber = boost::make_shared<ProjectFrameGrabber>(project);
        project.swap(currentProject);
    }
    {
        const MutexLock held(grabberLock);
        if (grabber)
            grabber.swap(projectGrabber);
        media.swap(mediaToRender);
    }
    Push(ThumbCmdProjectFrame, job);
}

void ThumbnailLoader::Push(ThumbnailCommandKind kind, const ThumbnailLoaderJob& job) {
    threadManager->PushCommand({kind, job, 0});
}

bool ThumbnailLoader::PruneDuplicateCommand(THUMB_THREADCMD& taken, THUMB_THREADCMD& queued) {
    if (taken.kind < ThumbCmdProjectFrame || queued.kind < ThumbCmdProjectFrame)
        return false;
    if (!IsKnown(taken.kind) || !IsKnown(queued.kind))
        throw KestoRenderLibException("Bad command on the ThumbnailWorkerThread: can't prune");
    const auto& older = boost::any_cast<const ThumbnailLoaderJob&>(taken.data);
    const auto& newer = boost::any_cast<const ThumbnailLoaderJob&>(queued.data);
    if (taken.kind != queued.kind || !Replaces(newer, older))
        return false;
    taken.data = queued.data;
    return true;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a handler owns its command
void ThumbnailLoader::HandleThreadCommand(void* context, THUMB_THREADCMD command) {
    auto& loader = *static_cast<ThumbnailLoader*>(context);
    if (loader.IsGoingAway())
        return; // pending, behind a sheet that the destructor has released
    const auto& job = boost::any_cast<const ThumbnailLoaderJob&>(command.data);
    if (loader.IsPaused() && !IsZoomJob(job)) {
        loader.threadManager->PushCommand(command);
        return;
    }
    IThumbnailLoaderFinishedCallback* const finished = WhomToTellOfTheEnd(job);
    loader.Run(command.kind, job);
    if (finished)
        finished->OnThumbnailJobFinished(job);
}

void ThumbnailLoader::Run(std::int32_t kind, const ThumbnailLoaderJob& job) {
    switch (kind) {
    case ThumbCmdProjectFrame:
        return RunProjectFrame(job);
    case ThumbCmdMediaFile:
        return RunMediaFile(job);
    case ThumbCmdProjectSprite:
        return RunSheet(job, JobMode::Project);
    case ThumbCmdMediaSprite:
        return RunSheet(job, JobMode::File);
    case ThumbCmdCallout:
        return RunCallout(job);
    default:
        throw KestoRenderLibException("Bad command on the ThumbnailWorkerThread: can't handle");
    }
}

void ThumbnailLoader::RunProjectFrame(const ThumbnailLoaderJob& job) {
    auto bitmap = IsZoomJob(job) ? ZoomedPicture(job) : ProjectPicture(job);
    if (!bitmap)
        return;
    Save(*bitmap, job);
    Deliver(std::move(bitmap), job);
}

// Deliberate: the one kind that saves no file.
void ThumbnailLoader::RunMediaFile(const ThumbnailLoaderJob& job) {
    if (auto bitmap = PictureOfFile(job))
        Deliver(std::move(bitmap), job);
}

// Deliberate: without a callback nothing is saved either.
void ThumbnailLoader::RunCallout(const ThumbnailLoaderJob& job) {
    if (!job.callback)
        return;
    auto bitmap = PictureOfCallout(job);
    if (!bitmap)
        return;
    Save(*bitmap, job);
    Deliver(std::move(bitmap), job);
}

void ThumbnailLoader::RunSheet(const ThumbnailLoaderJob& job, JobMode mode) {
    spriteDoneEvent.reset();
    if (IsGoingAway())
        spriteDoneEvent.set(); // the destructor's signal may have been the one that was reset
    Event tilesRan(EventReset::Manual);
    ThumbnailLoader tileLoader(true, SpriteStyleRows);
    ThumbnailLoaderJob tiles = job;
    tiles.callback = this;
    tiles.useSpriteSheet = false;
    tileLoader.Queue(tiles, mode);
    tileLoader.threadManager->PushCommand({endOfTiles, SignalsItsEnd(tilesRan), 0});
    AwaitSheet(job, tilesRan);
}

/// Without end where the sheet never fills, but for the end of this loader: then it is given up when no tile
/// is left that could fill it. Tiles of other sources than projects never reach a sheet.
void ThumbnailLoader::AwaitSheet(const ThumbnailLoaderJob& job, Event& tilesRan) {
    spriteDoneEvent.wait();
    if (IsGoingAway() && job.sourceKind == SourceProject)
        tilesRan.wait();
}

bool ThumbnailLoader::IsGoingAway() {
    return goingAway.waitFor(std::chrono::nanoseconds::zero());
}

boost::shared_ptr<ProjectFrameGrabber> ThumbnailLoader::CurrentGrabber() {
    const MutexLock held(grabberLock);
    return projectGrabber;
}

/// The current grabber, with the media of the latest job. On the worker.
boost::shared_ptr<ProjectFrameGrabber> ThumbnailLoader::PreparedGrabber() {
    boost::shared_ptr<ProjectFrameGrabber> grabber;
    std::list<boost::shared_ptr<const KestoMediaLib::Media>> media;
    {
        const MutexLock held(grabberLock);
        grabber = projectGrabber;
        media = mediaToRender;
    }
    if (grabber)
        grabber->setMediaToRender(media);
    return grabber;
}

std::unique_ptr<Gdiplus::Bitmap> ThumbnailLoader::ProjectPicture(const ThumbnailLoaderJob& job) {
    const auto grabber = PreparedGrabber();
    return grabber ? PictureOfFrame(job, *grabber) : nullptr;
}

// Deliberate: the viewport is that of the grabber which is current by then, as for every call of one.
std::unique_ptr<Gdiplus::Bitmap> ThumbnailLoader::ZoomedPicture(const ThumbnailLoaderJob& job) {
    const auto grabber = PreparedGrabber();
    if (!grabber || !job.project)
        return nullptr;
    const auto frame = grabber->frameAtTimeForZoomNPan(FrameNumberOf(job), {job.zoomWidth, job.zoomHeight},
                                                       job.zoomRect, outsideOpacityOfZoom);
    return CropOfFrame(job, frame, CurrentGrabber()->viewport());
}

void ThumbnailLoader::Save(Gdiplus::Bitmap& bitmap, const ThumbnailLoaderJob& job) {
    Gdiplus::Bitmap* handed = &bitmap;
    OnLoadedGdiPlusBitmapThumbnailForSavingToFile(&handed, job.outputFilePath);
}

void ThumbnailLoader::Deliver(std::unique_ptr<Gdiplus::Bitmap> bitmap, const ThumbnailLoaderJob& job) {
    if (!job.callback)
        return;
    Gdiplus::Bitmap* handed = bitmap.release();
    job.callback->OnLoadedGdiPlusBitmapThumbnail(&handed, job);
    bitmap.reset(handed);
}

void ThumbnailLoader::OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                                     const ThumbnailLoaderJob& job) {
    if (!bitmap || !*bitmap)
        return;
    if (job.sourceKind == SourceProject)
        AddTile(**bitmap);
    else
        HandOn(bitmap, job);
}

void ThumbnailLoader::OnLoadedGdiPlusBitmapThumbnailForSavingToFile(Gdiplus::Bitmap** bitmap,
                                                                    const std::string& path) {
    if (bitmap && *bitmap && !path.empty())
        (void)ImageHelper::QuickSavePic(*bitmap, path); // not reported
}

void ThumbnailLoader::HandOn(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob& job) {
    // Deliberate: a tile that is handed on to the loader it came to goes round without end, so that such a
    // sheet never fills. Waiting is the same to everybody, without the heat and the growing stack.
    if (job.callback == this)
        goingAway.wait();
    else if (job.callback)
        job.callback->OnLoadedGdiPlusBitmapThumbnail(bitmap, job);
}

void ThumbnailLoader::AddTile(Gdiplus::Bitmap& bitmap) {
    const RecursiveMutexLock held(spriteLock);
    const auto composer = spriteComposer; // the callback may put another one in its place
    if (!composer)
        return; // a tile of a sheet whose place another one took
    composer->AddBitmap(bitmap);
    if (!composer->AllThumbnailsArrived())
        return;
    composer->DoneAddingBitmaps();
    if (spriteComposer == composer)
        spriteComposer.reset();
    spriteDoneEvent.set();
}

} // namespace KestoThumbnailer
