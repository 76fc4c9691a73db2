#pragma once

#include "platform/Export.h"
#include "platform/KestoMediaLib.h"
#include "platform/Threading.h"
#include "scheduling/IThumbnailLoader.h"
#include "scheduling/IThumbnailLoaderGdiplusBitmapCallback.h"
#include "scheduling/IThumbnailLoaderGdiplusBitmapCallbackForSavingtoFile.h"
#include "scheduling/SpriteComposer.h"
#include "scheduling/THUMB_THREADCMD.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <string>

namespace KestoThumbnailer {

class IWorkerThreadManager;
class ProjectFrameGrabber;
enum class JobMode : int;

/// The commands of a loader, each with a `ThumbnailLoaderJob` as its `data`.
enum ThumbnailCommandKind : std::int32_t {
    ThumbCmdProjectFrame = 1,  ///< one frame of a project
    ThumbCmdMediaFile = 2,     ///< one picture of a video or image file
    ThumbCmdProjectSprite = 3, ///< a sheet of a project
    ThumbCmdMediaSprite = 4,   ///< a sheet of a file
    ThumbCmdCallout = 5,       ///< one callout
};

/// Makes thumbnails on one worker thread, one after another. The process must have started GDI+.
///
/// A job becomes one command for each of its times, or one for a sheet. When a command is taken, later
/// duplicates are folded into it: it runs once, with the newest job. The frames of all projects come from one
/// grabber, which belongs to the loader: a pending frame is rendered of the project, and with the media to
/// render, of the job that was queued last. So jobs of several projects want a loader each.
///
/// A sheet fills only with as many pictures as it has times, and holds the worker until then: for the life of
/// the loader where a time has no picture, where tiles are duplicates (two equal times, any `dedupeId` of 1
/// or more), and for every sheet whose `sourceKind` is not `SourceProject`. There is one sheet at a time: one
/// that is asked for takes the place of one that is not full.
///
/// A callback that is an `IThumbnailLoaderFinishedCallback`, too, is told of each end, with or without a
/// picture.
///
/// Requires: not destroyed on its own worker, as in a callback. Callbacks outlive the loader, or the jobs
/// that name them. Guarantees: once the destructor has returned, no callback runs. It drops what is pending
/// and waits for what runs; a sheet is completed if it can be, and given up otherwise.
///
/// An exception that a source or a callback throws on the worker ends the process.
class KESTO_EXPORT ThumbnailLoader final : public IThumbnailLoader,
                                           public IThumbnailLoaderGdiplusBitmapCallback,
                                           public IThumbnailLoaderGdiplusBitmapCallbackForSavingtoFile {
public:
    /// Starts the worker. Without `pruneDuplicates` every command runs; `style` is that of all its sheets.
    /// Throws std::system_error when the system has no thread to give.
    explicit ThumbnailLoader(bool pruneDuplicates = true, SpriteStyle style = SpriteStyleRows);
    ~ThumbnailLoader() override;
    ThumbnailLoader(const ThumbnailLoader&) = delete;
    ThumbnailLoader& operator=(const ThumbnailLoader&) = delete;

    /// Commands that are taken go back to the end of the queue, again and again, so that the worker is busy
    /// without doing anything; zoom jobs run all the same, and so does a sheet that was begun.
    void Pause() override;
    void Resume() override;
    bool IsPaused() override;

    /// Makes the project of a job that names only its path or text, here and now. What the project's makers
    /// throw passes through, and nothing is queued then.
    bool GetThumbnailAsync(const ThumbnailLoaderJob& job) override KESTO_EXCLUDES(projectLock, grabberLock);

    void GetThumbnailRectInSpriteSheet(int thumbWidth, int thumbHeight, int index, int count, int& left,
                                       int& top, int& right, int& bottom) override;

    /// Where the tiles of a sheet arrive, in `SourceProject` jobs; other jobs are handed on to their own
    /// callback. When that is this loader, there is no end to handing on: the call returns when the loader is
    /// destroyed. Leaves `*bitmap` to the caller. The sheet's callback runs in here under `spriteLock`: it
    /// may use this loader, but not wait for another thread that asks it for a sheet.
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob& job) override
        KESTO_EXCLUDES(grabberLock);

    /// Saves `*bitmap` and leaves it to the caller. A failed save is not reported.
    void OnLoadedGdiPlusBitmapThumbnailForSavingToFile(Gdiplus::Bitmap** bitmap,
                                                       const std::string& path) override;

    /// Runs one command of the loader `context`; on its worker. Throws boost::bad_any_cast for `data` that is
    /// no job, KestoRenderLib::KestoRenderLibException for a kind that is none of `ThumbnailCommandKind`.
    static void HandleThreadCommand(void* context, THUMB_THREADCMD command);

    /// True when `taken` stands for `queued`, whose job it then has: for equal jobs of one kind, for those
    /// with the same `dedupeId`, and for any two zoom jobs. Never for kinds below 1; for others throws as
    /// `HandleThreadCommand` does.
    static bool PruneDuplicateCommand(THUMB_THREADCMD& taken, THUMB_THREADCMD& queued);

private:
    friend class ThumbnailLoaderForTesting;
    /// Over a manager that it does not start; it may be null.
    explicit ThumbnailLoader(boost::shared_ptr<IWorkerThreadManager> manager);

    void QueueProject(const ThumbnailLoaderJob& job, boost::shared_ptr<KestoMediaLib::Project> project);
    void Queue(const ThumbnailLoaderJob& job, JobMode mode);
    void QueueSheet(const ThumbnailLoaderJob& job, JobMode mode);
    void QueuePicture(const ThumbnailLoaderJob& job, JobMode mode);
    void QueueProjectFrame(const ThumbnailLoaderJob& job) KESTO_EXCLUDES(projectLock, grabberLock);
    void Push(ThumbnailCommandKind kind, const ThumbnailLoaderJob& job);

    void Run(std::int32_t kind, const ThumbnailLoaderJob& job);
    void RunProjectFrame(const ThumbnailLoaderJob& job);
    void RunMediaFile(const ThumbnailLoaderJob& job);
    void RunCallout(const ThumbnailLoaderJob& job);
    void RunSheet(const ThumbnailLoaderJob& job, JobMode mode);
    void AwaitSheet(const ThumbnailLoaderJob& job, Event& tilesRan);
    bool IsGoingAway();

    boost::shared_ptr<ProjectFrameGrabber> CurrentGrabber() KESTO_EXCLUDES(grabberLock);
    boost::shared_ptr<ProjectFrameGrabber> PreparedGrabber() KESTO_EXCLUDES(grabberLock);
    std::unique_ptr<Gdiplus::Bitmap> ProjectPicture(const ThumbnailLoaderJob& job);
    std::unique_ptr<Gdiplus::Bitmap> ZoomedPicture(const ThumbnailLoaderJob& job);

    void Save(Gdiplus::Bitmap& bitmap, const ThumbnailLoaderJob& job);
    static void Deliver(std::unique_ptr<Gdiplus::Bitmap> bitmap, const ThumbnailLoaderJob& job);
    void HandOn(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob& job);
    void AddTile(Gdiplus::Bitmap& bitmap) KESTO_EXCLUDES(spriteLock);

    boost::shared_ptr<IWorkerThreadManager> threadManager;
    Event spriteDoneEvent{EventReset::Manual};
    boost::shared_ptr<SpriteComposer> spriteComposer KESTO_GUARDED_BY(spriteLock);
    /// Held while a sheet is delivered, whose callback may ask for the next one.
    RecursiveMutex spriteLock{LockRanks::loaderSprite};
    const SpriteStyle spriteStyle;
    std::atomic<bool> paused = false; // no lock: one flag, which no other state goes with
    boost::shared_ptr<KestoMediaLib::Project> currentProject KESTO_GUARDED_BY(projectLock);
    boost::shared_ptr<ProjectFrameGrabber> projectGrabber KESTO_GUARDED_BY(grabberLock);
    /// Never held together with spriteLock, nor while something is rendered.
    Mutex grabberLock{LockRanks::loaderGrabber};

    /// Of the job that was queued last. The worker gives it to the grabber, which is no thread's but its.
    std::list<boost::shared_ptr<const KestoMediaLib::Media>> mediaToRender KESTO_GUARDED_BY(grabberLock);

    /// Held while the frame of a project is queued, a grabber made for it included, so that the last command
    /// in the queue is that of the current grabber.
    Mutex projectLock KESTO_ACQUIRED_BEFORE(grabberLock){LockRanks::loaderProject};

    Event goingAway{EventReset::Manual}; // signalled when the destructor begins
};

} // namespace KestoThumbnailer
