#include "gdiplus/scaling/BoxReducer.h"
#include "gdiplus/scaling/Scaler.h"
#include "gdiplus/scaling/scaler/PackedResampler.h"
#include "gdiplus/scaling/scaler/PlanarResampler.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

namespace GdiplusBackend {

namespace {

struct Size {
    int width;
    int height;
};

constexpr Size fullHd = {1920, 1080};
constexpr Size fullHdThumbnail = {164, 92};
constexpr Size photo = {4000, 3000};
constexpr Size photoThumbnail = {160, 120};

class Pixels {
public:
    explicit Pixels(Size dimensions)
        : size(dimensions)
        , bytes(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 4) {
        for (std::size_t byte = 0; byte < bytes.size(); ++byte)
            bytes[byte] = static_cast<std::byte>(byte * 2654435761U >> 13);
    }

    PixelView view() {
        return {bytes.data(), std::ptrdiff_t{size.width} * 4, size.width, size.height, PixelFormat32bppPARGB};
    }

private:
    Size size;
    std::vector<std::byte> bytes;
};

ScaleRequest wholePicture(const ConstPixelView& source, Kernel kernel, Opacity opacity) {
    return {source,
            {0, 0, static_cast<double>(source.width), static_cast<double>(source.height)},
            kernel,
            opacity};
}

void scaleWhole(benchmark::State& state, Size from, Size to, Kernel kernel, Opacity opacity) {
    Pixels source(from);
    Pixels target(to);
    const ScaleRequest request = wholePicture(source.view(), kernel, opacity);
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(scale(request, target.view()));
}

/// Two sizes in turn, so that no graph is used twice.
void scaleChangingSizes(benchmark::State& state, Kernel kernel, Opacity opacity) {
    Pixels source(fullHd);
    Pixels landscape(fullHdThumbnail);
    Pixels portrait({52, 92});
    const ScaleRequest request = wholePicture(source.view(), kernel, opacity);
    ScaleRequest middle = request;
    middle.region = {656, 0, 608, 1080};
    for ([[maybe_unused]] auto turn : state) {
        benchmark::DoNotOptimize(scale(request, landscape.view()));
        benchmark::DoNotOptimize(scale(middle, portrait.view()));
    }
}

/// The same kernels over all source pixels, without averaging blocks first.
void resampleWhole(benchmark::State& state, Size from, Size to, Kernel kernel, Opacity opacity) {
    Pixels source(from);
    Pixels target(to);
    const ScaleRequest request = wholePicture(source.view(), kernel, opacity);
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(Scaling::resamplePlanar(request, target.view()));
}

void resamplePackedWhole(benchmark::State& state, Size from, Size to, Kernel kernel, Opacity opacity) {
    Pixels source(from);
    Pixels target(to);
    const ScaleRequest request = wholePicture(source.view(), kernel, opacity);
    for ([[maybe_unused]] auto turn : state)
        Scaling::resamplePacked(request, target.view());
}

/// Rows as a decoder gives them: always the same memory, still in the cache.
void reduceRows(benchmark::State& state) {
    const auto samples = static_cast<int>(state.range(0));
    const auto factor = static_cast<int>(state.range(1));
    const std::vector<std::byte> row(
        static_cast<std::size_t>(photo.width) * static_cast<std::size_t>(samples), std::byte{99});
    for ([[maybe_unused]] auto turn : state) {
        BoxReducer reducer(
            photo.width, photo.height, samples, factor, factor,
            [](std::span<const std::byte> averages) { benchmark::DoNotOptimize(averages.data()); });
        for (int y = 0; y < photo.height; ++y)
            reducer.putRow(row);
    }
    state.SetBytesProcessed(state.iterations() * photo.height * static_cast<std::int64_t>(row.size()));
}

} // namespace

#define KESTO_EACH_FILTER(function, name, ...)                                                               \
    BENCHMARK_CAPTURE(function, name##_linear_opaque, __VA_ARGS__, Kernel::Linear, Opacity::Opaque)          \
        ->Unit(benchmark::kMicrosecond);                                                                     \
    BENCHMARK_CAPTURE(function, name##_linear_transparent, __VA_ARGS__, Kernel::Linear,                      \
                      Opacity::Transparent)                                                                  \
        ->Unit(benchmark::kMicrosecond);                                                                     \
    BENCHMARK_CAPTURE(function, name##_cubic_opaque, __VA_ARGS__, Kernel::Cubic, Opacity::Opaque)            \
        ->Unit(benchmark::kMicrosecond);                                                                     \
    BENCHMARK_CAPTURE(function, name##_cubic_transparent, __VA_ARGS__, Kernel::Cubic, Opacity::Transparent)  \
        ->Unit(benchmark::kMicrosecond)

KESTO_EACH_FILTER(scaleWhole, fullHdToThumbnail, fullHd, fullHdThumbnail);
KESTO_EACH_FILTER(scaleWhole, photoToThumbnail, photo, photoThumbnail);
KESTO_EACH_FILTER(scaleWhole, fullHdToHalf, fullHd, Size{960, 540});
KESTO_EACH_FILTER(scaleWhole, thumbnailToDouble, fullHdThumbnail, Size{328, 184});
KESTO_EACH_FILTER(resampleWhole, fullHdToThumbnail, fullHd, fullHdThumbnail);
KESTO_EACH_FILTER(resampleWhole, photoToThumbnail, photo, photoThumbnail);
KESTO_EACH_FILTER(resamplePackedWhole, reducedToThumbnail, Size{384, 216}, fullHdThumbnail);
KESTO_EACH_FILTER(resampleWhole, reducedToThumbnail, Size{384, 216}, fullHdThumbnail);
KESTO_EACH_FILTER(resamplePackedWhole, fullHdToHalf, fullHd, Size{960, 540});
BENCHMARK_CAPTURE(scaleChangingSizes, linear_opaque, Kernel::Linear, Opacity::Opaque)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(scaleChangingSizes, cubic_transparent, Kernel::Cubic, Opacity::Transparent)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(reduceRows)
    ->ArgNames({"samples", "factor"})
    ->ArgsProduct({{3, 4}, {2, 4, 12}})
    ->Unit(benchmark::kMicrosecond);

} // namespace GdiplusBackend
