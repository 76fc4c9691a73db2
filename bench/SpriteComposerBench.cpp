#include "platform/Gdiplus.h"
#include "scheduling/IThumbnailLoaderGdiplusBitmapCallback.h"
#include "scheduling/SpriteComposer.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace KestoThumbnailer {

namespace {

constexpr int tileWidth = 160;
constexpr int tileHeight = 90;
constexpr int tileCount = 400;

/// As a thumbnail of a frame is: opaque, in the format that a producer gives, with no two pixels alike.
std::unique_ptr<Gdiplus::Bitmap> pictureOf(int width, int height, PixelFormat format, unsigned alpha = 255) {
    auto picture = std::make_unique<Gdiplus::Bitmap>(width, height, format);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture->SetPixel(x, y,
                              Gdiplus::Color(alpha << 24 | static_cast<unsigned>(x * 255 / width) << 16 |
                                             static_cast<unsigned>(y * 255 / height) << 8 |
                                             static_cast<unsigned>(x * y) % 256));
    return picture;
}

class Receiver final : public IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob&) override {
        benchmark::DoNotOptimize(*bitmap);
    }
};

/// A whole sheet: its bitmap, its tiles, and its copy for the callback.
void composeSheet(benchmark::State& state, SpriteStyle style, Gdiplus::Bitmap& tile,
                  const std::string& filePath) {
    Receiver receiver;
    for ([[maybe_unused]] auto turn : state) {
        SpriteComposer composer(tileWidth, tileHeight, tileCount, &receiver, filePath, style);
        for (int index = 0; index < tileCount; ++index)
            composer.AddBitmap(tile);
        composer.DoneAddingBitmaps();
    }
    state.counters["tile"] = benchmark::Counter(static_cast<double>(state.iterations()) * tileCount,
                                                benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void exactTiles(benchmark::State& state, SpriteStyle style, PixelFormat format, unsigned alpha) {
    composeSheet(state, style, *pictureOf(tileWidth, tileHeight, format, alpha), {});
}

/// Tiles that keep the shape of a source that is not 16 by 9 are stretched into their place.
void scaledTiles(benchmark::State& state, SpriteStyle style) {
    composeSheet(state, style, *pictureOf(120, tileHeight, PixelFormat32bppARGB), {});
}

void savedSheet(benchmark::State& state, const std::string& extension) {
    const auto folder = std::filesystem::temp_directory_path();
    const std::string path = (folder / ("kesto-sheet-bench." + extension)).string();
    composeSheet(state, SpriteStyleRows, *pictureOf(tileWidth, tileHeight, PixelFormat32bppARGB), path);
    std::filesystem::remove(path);
}

#define SHEET_BENCHMARK(function, name, ...)                                                                 \
    BENCHMARK_CAPTURE(function, name, __VA_ARGS__)->Unit(benchmark::kMillisecond)

SHEET_BENCHMARK(exactTiles, rowsOfArgb, SpriteStyleRows, PixelFormat32bppARGB, 255);
SHEET_BENCHMARK(exactTiles, rowsOfPremultiplied, SpriteStyleRows, PixelFormat32bppPARGB, 255);
SHEET_BENCHMARK(exactTiles, rowsOfRgb24, SpriteStyleRows, PixelFormat24bppRGB, 255);
SHEET_BENCHMARK(exactTiles, rowsOfTranslucent, SpriteStyleRows, PixelFormat32bppARGB, 128);
SHEET_BENCHMARK(exactTiles, gridOfArgb, SpriteStyleGrid, PixelFormat32bppARGB, 255);
SHEET_BENCHMARK(exactTiles, gridOfTranslucent, SpriteStyleGrid, PixelFormat32bppARGB, 128);
SHEET_BENCHMARK(scaledTiles, rows, SpriteStyleRows);
SHEET_BENCHMARK(scaledTiles, grid, SpriteStyleGrid);
SHEET_BENCHMARK(savedSheet, png, "png");
SHEET_BENCHMARK(savedSheet, jpg, "jpg");

} // namespace

} // namespace KestoThumbnailer

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
