#include "platform/Threading.h"
#include "scheduling/ThumbnailLoaderJob.h"
#include "scheduling/WorkerThreadManager.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace KestoThumbnailer {

namespace {

constexpr std::int32_t jobKind = 1;
constexpr std::int32_t gateKind = 2;
constexpr std::int32_t lastKind = 3;

/// Where two jobs of the queue differ; earlier fields are compared first.
enum class DifferIn { OutputFilePath, Times, TrackIndex };

struct Gate {
    Event reached{EventReset::Automatic};
    Event opened{EventReset::Automatic};
    Event done{EventReset::Automatic};
};

// NOLINTNEXTLINE(performance-unnecessary-value-param): a handler owns its command
void handle(void* context, THUMB_THREADCMD command) {
    auto& gate = *static_cast<Gate*>(context);
    if (command.kind == gateKind) {
        gate.reached.set();
        gate.opened.wait();
    } else if (command.kind == lastKind) {
        gate.done.set();
    }
}

bool foldEqualJobs(THUMB_THREADCMD& taken, THUMB_THREADCMD& queued) {
    if (taken.kind != queued.kind)
        return false;
    auto& newer = boost::any_cast<ThumbnailLoaderJob&>(queued.data);
    if (!(boost::any_cast<ThumbnailLoaderJob&>(taken.data) == newer))
        return false;
    taken.data.swap(queued.data);
    return true;
}

/// Strings of the length that real paths have, so that they lie on the heap.
ThumbnailLoaderJob distinctJob(int number, DifferIn field) {
    ThumbnailLoaderJob job;
    job.outputFilePath = "/home/somebody/.cache/thumbnails/library/of/recordings.png";
    job.thumbnailKey = "library/of/recordings/thumbnail";
    job.mediaPath = "/home/somebody/Videos/library/of/recordings.mp4";
    job.times = {0.0};
    job.userData = "the caller's own text about this thumbnail";
    switch (field) {
    case DifferIn::OutputFilePath:
        job.outputFilePath += std::to_string(number);
        break;
    case DifferIn::Times:
        job.times = {number / 30.0};
        break;
    case DifferIn::TrackIndex:
        job.trackIndex = number;
        break;
    }
    return job;
}

/// Takes every command out of a full queue, pruning as it goes; filling it is not timed.
void drainDistinctJobs(benchmark::State& state, DifferIn field) {
    const auto count = static_cast<int>(state.range(0));
    Gate gate;
    WorkerThreadManager manager;
    manager.Start(handle, &gate, "Bench");
    manager.SetPruning(true, foldEqualJobs);
    for ([[maybe_unused]] auto turn : state) {
        state.PauseTiming();
        manager.PushCommand({gateKind, {}, 0});
        gate.reached.wait();
        for (int number = 0; number < count; ++number)
            manager.PushCommand({jobKind, distinctJob(number, field), 0});
        manager.PushCommand({lastKind, {}, 0});
        state.ResumeTiming();
        gate.opened.set();
        gate.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

/// The same with equal jobs: one take folds the whole queue.
void foldEqualJobsAtOnce(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    Gate gate;
    WorkerThreadManager manager;
    manager.Start(handle, &gate, "Bench");
    manager.SetPruning(true, foldEqualJobs);
    for ([[maybe_unused]] auto turn : state) {
        state.PauseTiming();
        manager.PushCommand({gateKind, {}, 0});
        gate.reached.wait();
        for (int number = 0; number < count; ++number)
            manager.PushCommand({jobKind, distinctJob(0, DifferIn::Times), 0});
        manager.PushCommand({lastKind, {}, 0});
        state.ResumeTiming();
        gate.opened.set();
        gate.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

constexpr int few = 100;
constexpr int many = 10000;

BENCHMARK_CAPTURE(drainDistinctJobs, outputFilePath, DifferIn::OutputFilePath)
    ->RangeMultiplier(10)
    ->Range(few, many)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK_CAPTURE(drainDistinctJobs, times, DifferIn::Times)
    ->RangeMultiplier(10)
    ->Range(few, many)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK_CAPTURE(drainDistinctJobs, trackIndex, DifferIn::TrackIndex)
    ->RangeMultiplier(10)
    ->Range(few, many)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(foldEqualJobsAtOnce)
    ->Arg(many)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

} // namespace

} // namespace KestoThumbnailer
