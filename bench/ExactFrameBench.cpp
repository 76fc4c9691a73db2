// Frames of videos in process: exact_frame_bench, with the folder that bench/compare-inputs fills in
// KESTO_BENCH_INPUTS or in build/bench-inputs. All are of a frame of hd.mp4 that is itself a key frame.

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/ProjectFrameGrabber.h>
#include <KestoThumbnailer/platform/FrameCodecLib.h>
#include <KestoThumbnailer/platform/KestoRenderProject.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

using KestoRenderLib::MetaBitmap;
using Helper = KestoThumbnailer::GdiplusBitmapThumbnailingHelper;

constexpr int frameRate = 25;
constexpr int seconds = 10;

std::string inputFile() {
    const char* folder =
        std::getenv("KESTO_BENCH_INPUTS"); // NOLINT(concurrency-mt-unsafe): before any thread
    return std::filesystem::path(folder ? folder : "build/bench-inputs") / "hd.mp4";
}

std::unique_ptr<FrameCodecLib::Decoder> openDecoder() {
    const std::unique_ptr<FrameCodecLib::DecoderFactory> factory(FrameCodecLib::DecoderFactory::Create());
    return std::unique_ptr<FrameCodecLib::Decoder>(factory->CreateDecoder(inputFile(), -1, 1));
}

bool hasFrame(FrameCodecLib::Decoder& decoder) {
    FrameCodecLib::FrameTiming timing;
    return std::unique_ptr<FrameCodecLib::Bitmap>(decoder.GetFrameAtTime(seconds, timing, 0)) != nullptr;
}

void complain(benchmark::State& state) {
    state.SkipWithError("there is no frame; has bench/compare-inputs been run?");
}

void open(benchmark::State& state) {
    for (auto _ : state)
        if (!openDecoder())
            return complain(state);
}

/// The whole way of a file that nobody has open.
void thumbnailForFile(benchmark::State& state) {
    const std::wstring path = std::filesystem::path(inputFile()).wstring();
    for (auto _ : state)
        if (!std::unique_ptr<Gdiplus::Bitmap>(Helper::GetThumbnailForFile(path, seconds, 0, 92, frameRate)))
            return complain(state);
}

/// Of a frame that is decoded: its conversion to a size that was not asked for lately.
void convert(benchmark::State& state) {
    const auto decoder = openDecoder();
    const auto height = static_cast<int>(state.range(0));
    for (auto _ : state) {
        if (!decoder || !decoder->SetOutputSize(height * 16 / 9, height) || !hasFrame(*decoder))
            return complain(state);
        state.PauseTiming();
        for (int forgotten = 1; forgotten <= 3; ++forgotten)
            if (!decoder->SetOutputSize(16 * forgotten, 9 * forgotten) || !hasFrame(*decoder))
                return complain(state);
        state.ResumeTiming();
    }
}

/// The same time again: rendering from the decoder's picture, scaling to the canvas and to the thumbnail.
void repeatInProject(benchmark::State& state) {
    const auto project = KestoRenderLib::ProjectGenerator::Create_MediaProject(inputFile(), frameRate);
    if (!project)
        return complain(state);
    KestoThumbnailer::ProjectFrameGrabber grabber(project);
    for (auto _ : state) {
        const auto frame = grabber.frameAtTime(seconds, /*keepOrientation=*/true, {});
        if (!frame || !std::unique_ptr<Gdiplus::Bitmap>(Helper::ScaleToGetThumbnail(frame, 0, 92)))
            return complain(state);
    }
}

BENCHMARK(open)->Unit(benchmark::kMillisecond);
BENCHMARK(thumbnailForFile)->Unit(benchmark::kMillisecond);
BENCHMARK(convert)->Unit(benchmark::kMillisecond)->Arg(92)->Arg(540)->Arg(1080);
BENCHMARK(repeatInProject)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok)
        return EXIT_FAILURE;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    Gdiplus::GdiplusShutdown(token);
    return EXIT_SUCCESS;
}
