// Many threads on few loaders, which come and go meanwhile. Each loader has a ledger of what it was asked for
// and what it delivered. Queues are kept short, since a take costs time linear in their length.

#include "scheduling/LoaderFixture.h"

#include "support/renderer/TestProject.h"

#include <array>
#include <atomic>
#include <memory>
#include <set>
#include <thread>

namespace KestoThumbnailer {

namespace {

using TestSupport::makeTestMedia;
using TestSupport::makeTestProject;
using TestSupport::TestProject;
using Number = std::uint64_t;

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr Number jobsOfAPusher = 1000;
#else
constexpr Number jobsOfAPusher = 10000;
#endif
constexpr Number pushers = 8;
constexpr std::size_t slots = 4;
constexpr Number jobsOfASlot = pushers * jobsOfAPusher / slots;
constexpr Number jobsOfALoader = jobsOfASlot / 10;
constexpr std::size_t mostPending = 64;

constexpr Number jobsOfAPause = jobsOfALoader / 20;

/// Jobs without a picture, from here up.
constexpr Number blankNumbers = Number{1} << 60;
/// Jobs that are pushed when nobody else pushes any more.
constexpr Number lastNumbers = Number{1} << 40;

/// What one loader was asked for and has delivered. Those who use the loader enter first, so that nobody
/// destroys it under them.
class Ledger final : public IThumbnailLoaderGdiplusBitmapCallback {
public:
    /// False when the ledger is closed, or `job` is one too many for now.
    bool enterWith(Number job) {
        const MutexLock held(lock);
        if (closed || pending.size() >= mostPending)
            return false;
        pending.insert(job);
        ++users;
        if (++accepted == jobsOfALoader)
            changed.notify_all();
        return true;
    }

    bool enter() {
        const MutexLock held(lock);
        users += closed ? 0 : 1;
        return !closed;
    }

    void leave() {
        const MutexLock held(lock);
        if (--users == 0 && closed)
            changed.notify_all();
    }

    void awaitRoom() {
        MutexLock held(lock);
        while (!closed && pending.size() >= mostPending)
            room.wait(held.native());
    }

    void awaitEnoughJobs() {
        MutexLock held(lock);
        while (accepted < jobsOfALoader)
            changed.wait(held.native());
    }

    void awaitZoom(Number job) {
        MutexLock held(lock);
        while (lastZoom < job)
            changed.wait(held.native());
    }

    /// A job of the one who closed the ledger.
    void expect(Number job) {
        const MutexLock held(lock);
        pending.insert(job);
    }

    void awaitDelivered(Number job) {
        MutexLock held(lock);
        while (pending.contains(job))
            changed.wait(held.native());
    }

    std::size_t undelivered() {
        const MutexLock held(lock);
        return pending.size();
    }

    /// Lets nobody in any more, and returns when all have left. Gives the number of jobs accepted.
    Number close() {
        MutexLock held(lock);
        closed = true;
        room.notify_all();
        while (users > 0)
            changed.wait(held.native());
        return accepted;
    }

    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob& job) override {
        const MutexLock held(lock);
        if (IsZoomJob(job))
            takeZoomLocked(job.opaqueValue);
        else
            takePictureLocked(job.opaqueValue);
        surprises += *bitmap && (*bitmap)->GetWidth() > 0 ? 0 : 1;
    }

    /// Deliveries that nobody asked for, that came twice, or that were older than one before.
    int surprisesSoFar() {
        const MutexLock held(lock);
        return surprises;
    }

private:
    void takeZoomLocked(Number job) KESTO_REQUIRES(lock) {
        surprises += job > lastZoom ? 0 : 1;
        lastZoom = job;
        changed.notify_all();
    }

    void takePictureLocked(Number job) KESTO_REQUIRES(lock) {
        surprises += pending.erase(job) == 1 ? 0 : 1;
        if (pending.size() == mostPending / 2) // not for each: a crowd waits
            room.notify_all();
        if (closed)
            changed.notify_all();
    }

    Mutex lock;
    std::condition_variable room;
    std::condition_variable changed;
    std::set<Number> pending KESTO_GUARDED_BY(lock);
    Number accepted KESTO_GUARDED_BY(lock) = 0;
    Number lastZoom KESTO_GUARDED_BY(lock) = 0;
    int users KESTO_GUARDED_BY(lock) = 0;
    int surprises KESTO_GUARDED_BY(lock) = 0;
    bool closed KESTO_GUARDED_BY(lock) = false;
};

/// One loader from its making to its end, with the projects that it switches between.
struct Era {
    Ledger ledger;
    const std::array<boost::shared_ptr<TestProject>, 2> projects{makeTestProject(2, 2),
                                                                 makeTestProject(4, 2)};
    std::unique_ptr<ThumbnailLoader> loader = std::make_unique<ThumbnailLoader>();
};

/// Where one loader follows another.
class Slot {
public:
    std::shared_ptr<Era> current() {
        const MutexLock held(lock);
        return era;
    }

    std::shared_ptr<Era> replace() {
        auto next = std::make_shared<Era>();
        const MutexLock held(lock);
        era.swap(next);
        return next;
    }

    Event pauseDue{EventReset::Automatic};

private:
    Mutex lock;
    std::shared_ptr<Era> era KESTO_GUARDED_BY(lock) = std::make_shared<Era>();
};

enum class End { Drained, Abrupt, Paused, BehindASheetThatNeverFills };

class LoaderStress : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob jobWith(Number number, Era& era) {
        ThumbnailLoaderJob job = imageJob("", {static_cast<double>(number)});
        job.callback = &era.ledger;
        job.opaqueValue = number;
        return job;
    }

    ThumbnailLoaderJob frameWith(Number number, Era& era) {
        ThumbnailLoaderJob job = jobWith(number, era);
        job.sourceKind = SourceProject;
        job.project = era.projects[number / 64 % era.projects.size()];
        job.mediaToRender = {media};
        return job;
    }

    ThumbnailLoaderJob blankWith(Number number, Era& era) {
        ThumbnailLoaderJob job = jobWith(blankNumbers + number, era);
        job.mediaPath += ".missing";
        return job;
    }

    void askFor(Number number, Era& era) {
        const Number turn = number / slots; // a slot has every kind of job
        era.loader->GetThumbnailAsync(turn % 4 == 0 ? frameWith(number, era) : jobWith(number, era));
        if (turn % 16 == 0)
            era.loader->GetThumbnailAsync(blankWith(number, era));
    }

    void push(Number number, Slot& slot) {
        while (true) {
            const auto era = slot.current();
            if (!era->ledger.enterWith(number)) {
                era->ledger.awaitRoom();
                continue;
            }
            askFor(number, *era);
            if (number / slots % jobsOfAPause == 0)
                slot.pauseDue.set();
            era->ledger.leave();
            return;
        }
    }

    void pushAll(Number pusher) {
        for (Number job = 0; job < jobsOfAPusher; ++job)
            push(pusher * jobsOfAPusher + job, slotTable[job % slots]);
    }

    /// Zoom jobs run while the loader is paused, and of a burst the newest does.
    void pauseAndZoom(Slot& slot, Number& zoom) {
        const auto era = slot.current();
        if (!era->ledger.enter())
            return;
        era->loader->Pause();
        for (int burst = 0; burst < 3; ++burst) {
            ThumbnailLoaderJob job = jobWith(++zoom, *era);
            job.zoomWidth = 1;
            job.zoomHeight = 1;
            era->loader->GetThumbnailAsync(job);
        }
        era->ledger.awaitZoom(zoom);
        era->loader->Resume();
        era->ledger.leave();
    }

    void pauseNowAndThen(Slot& slot) {
        Number zoom = 0;
        for (slot.pauseDue.wait(); !finished; slot.pauseDue.wait())
            pauseAndZoom(slot, zoom);
    }

    /// Two jobs after all others: a command that was held back by a pause may still fall behind the first.
    void drainAndCount(Era& era) {
        for (const Number job : {lastNumbers, lastNumbers + 1}) {
            era.ledger.expect(job);
            era.loader->GetThumbnailAsync(jobWith(job, era));
            era.ledger.awaitDelivered(job);
        }
        lost += era.ledger.undelivered();
    }

    void finish(Era& era, End end) {
        switch (end) {
        case End::Drained:
            drainAndCount(era);
            break;
        case End::Abrupt:
            break;
        case End::Paused:
            era.loader->Pause();
            break;
        case End::BehindASheetThatNeverFills: {
            ThumbnailLoaderJob sheet = jobWith(lastNumbers, era);
            sheet.times = {0.0, 1.0};
            era.loader->GetThumbnailAsync(sheet);
            break;
        }
        }
        era.loader.reset();
        surprises += era.ledger.surprisesSoFar();
    }

    /// Puts one loader after another into the slot, as long as enough jobs are to come for the next.
    void replaceNowAndThen(Slot& slot) {
        constexpr std::array ends{End::Drained, End::Abrupt, End::Paused, End::BehindASheetThatNeverFills};
        Number accepted = 0;
        for (std::size_t turn = 0; accepted + jobsOfALoader <= jobsOfASlot; ++turn) {
            slot.current()->ledger.awaitEnoughJobs();
            const auto old = slot.replace();
            accepted += old->ledger.close();
            finish(*old, ends[turn % ends.size()]);
        }
        acceptedInTurns += accepted;
    }

    const boost::shared_ptr<const KestoMediaLib::Media> media = makeTestMedia();
    std::atomic<bool> finished = false; // read on its own
    std::atomic<int> surprises = 0;     // counters, read when the threads have ended
    std::atomic<std::size_t> lost = 0;
    std::atomic<Number> acceptedInTurns = 0;
    std::array<Slot, slots> slotTable;
};

} // namespace

TEST_F(LoaderStress, NothingIsLostWhileManyThreadsPushPauseZoomAndReplaceLoaders) {
    std::vector<std::thread> pushing;
    for (Number pusher = 0; pusher < pushers; ++pusher)
        pushing.emplace_back([this, pusher] { pushAll(pusher); });
    std::vector<std::thread> disturbing;
    for (Slot& slot : slotTable) {
        disturbing.emplace_back([this, &slot] { pauseNowAndThen(slot); });
        disturbing.emplace_back([this, &slot] { replaceNowAndThen(slot); });
    }

    for (std::thread& thread : pushing)
        thread.join();
    finished = true;
    for (Slot& slot : slotTable)
        slot.pauseDue.set();
    for (std::thread& thread : disturbing)
        thread.join();

    Number accepted = acceptedInTurns;
    for (Slot& slot : slotTable) {
        const auto era = slot.current();
        accepted += era->ledger.close();
        finish(*era, End::Drained);
    }
    EXPECT_EQ(accepted, pushers * jobsOfAPusher);
    EXPECT_EQ(lost, 0U);
    EXPECT_EQ(surprises, 0);
}

} // namespace KestoThumbnailer
