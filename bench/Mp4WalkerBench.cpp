// The walkers of MP4 files, in process: mp4_walker_bench, with the files that bench/compare-walkers makes in
// KESTO_BENCH_INPUTS or in build/bench-inputs.

#include "inspection/source/FileReader.h"
#include "inspection/source/MP4Parser.h"
#include "inspection/source/StreamTypes.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>

namespace {

std::wstring inputPath(const char* name) {
    const char* folder =
        std::getenv("KESTO_BENCH_INPUTS"); // NOLINT(concurrency-mt-unsafe): before any thread
    return (std::filesystem::path(folder ? folder : "build/bench-inputs") / "walkers" / name).wstring();
}

constexpr std::size_t tracksOfAll = 2;
constexpr const char* missing = "there are no tracks; has bench/compare-walkers been run?";

void findStreamTypes(benchmark::State& state, const char* name) {
    const std::wstring path = inputPath(name);
    for (auto _ : state) {
        if (FindStreamTypes(path).size() != tracksOfAll)
            return state.SkipWithError(missing);
    }
}

void parseTracks(benchmark::State& state, const char* name) {
    const std::wstring path = inputPath(name);
    for (auto _ : state) {
        DSMediaDetNS::MP4Parser parser(std::make_unique<FileReader>());
        try {
            parser.parse(path);
        } catch (const std::exception&) {
            return state.SkipWithError(missing);
        }
        if (parser.tracks().size() != tracksOfAll)
            return state.SkipWithError(missing);
    }
}

BENCHMARK_CAPTURE(findStreamTypes, front, "front.mp4")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(findStreamTypes, end, "end.mp4")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(findStreamTypes, large, "large.mp4")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseTracks, front, "front.mp4")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseTracks, end, "end.mp4")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseTracks, large, "large.mp4")->Unit(benchmark::kMicrosecond);

} // namespace
