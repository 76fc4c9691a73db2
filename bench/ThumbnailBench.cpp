// Thumbnails in process: thumbnail_bench, with the folder that bench/compare-inputs fills in
// KESTO_BENCH_INPUTS or in build/bench-inputs.

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

std::filesystem::path inputFolder() {
    const char* folder =
        std::getenv("KESTO_BENCH_INPUTS"); // NOLINT(concurrency-mt-unsafe): before any thread
    return folder ? folder : "build/bench-inputs";
}

void thumbnail(benchmark::State& state, const char* name) {
    const std::wstring path = (inputFolder() / name).wstring();
    for (auto _ : state) {
        const std::unique_ptr<Gdiplus::Bitmap> picture(
            KestoThumbnailer::GdiplusBitmapThumbnailingHelper::GetThumbnailForImage(path, 160, 120));
        if (!picture)
            return state.SkipWithError("there is no thumbnail; has bench/compare-inputs been run?");
    }
}

BENCHMARK_CAPTURE(thumbnail, Jpeg12Megapixels, "photo-12mp.jpg")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, ProgressiveJpeg12Megapixels, "photo-12mp-progressive.jpg")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, Png12Megapixels, "photo-12mp.png")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, PdfPage, "page.pdf")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, CmykJpeg, "demo/fig-cmyk.jpg")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, InterlacedPng16Bit, "demo/brushes-16bit-interlaced.png")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, Gif, "demo/brook-palette.gif")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, Bmp, "demo/sunset.bmp")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, TiffLzw, "demo/autumn-lzw.tif")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, Webp, "demo/drum.webp")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, Avif, "demo/bridge.avif")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, Heic, "demo/clock.heic")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, Svg, "demo/storm.svg")->Unit(benchmark::kMillisecond);

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
