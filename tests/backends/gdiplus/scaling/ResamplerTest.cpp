#include "gdiplus/scaling/scaler/PackedResampler.h"
#include "gdiplus/scaling/scaler/PlanarResampler.h"
#include "gdiplus/scaling/scaler/PlaneRowsSse2.h"

#include "backends/gdiplus/scaling/Pictures.h"

namespace GdiplusBackend::ScalingTest {

namespace {

using Scaling::PlaneRow;

constexpr std::size_t rowLength = 131;

struct PlaneMemory {
    std::vector<std::uint16_t> levels = std::vector<std::uint16_t>(rowLength * 4, 12345);

    PlaneRow row(Opacity opacity) {
        std::uint16_t* blue = levels.data();
        return {blue, blue + rowLength, blue + 2 * rowLength,
                opacity == Opacity::Transparent ? blue + 3 * rowLength : nullptr};
    }
};

std::vector<std::byte> randomPixels(std::mt19937& random) {
    std::vector<std::byte> pixels(rowLength * 4);
    for (std::byte& sample : pixels)
        sample = static_cast<std::byte>(random() % 256);
    return pixels;
}

class PlaneRows : public testing::TestWithParam<std::tuple<Opacity, int>> {};

/// Any geometry whose steps lie below 4, with fractional regions that may lie partly outside.
struct RandomCase {
    explicit RandomCase(std::mt19937& random)
        : source(noise(between(random, 1, 150), between(random, 1, 40)))
        , region{between(random, -1000, 1000) / 100.0, between(random, -1000, 1000) / 100.0,
                 between(random, 100, 15000) / 100.0, between(random, 100, 4000) / 100.0}
        , width(between(random, static_cast<int>(region.width / 4) + 1, 200))
        , height(between(random, static_cast<int>(region.height / 4) + 1, 60)) {}

    static int between(std::mt19937& random, int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    }

    Picture source;
    Region region;
    int width;
    int height;
};

class Resamplers : public FilteredScale {};

} // namespace

TEST_P(PlaneRows, SplitByVectorsLikePlain) {
    const auto [opacity, count] = GetParam();
    std::mt19937 random(3);
    const std::vector<std::byte> pixels = randomPixels(random);
    PlaneMemory plain;
    PlaneMemory vectors;
    Scaling::splitPixelsPlain(pixels.data(), count, plain.row(opacity));
    Scaling::splitPixels(pixels.data(), count, vectors.row(opacity));
    EXPECT_EQ(vectors.levels, plain.levels);
}

TEST_P(PlaneRows, JoinByVectorsLikePlainAtEveryLevel) {
    const auto [opacity, count] = GetParam();
    PlaneMemory planes;
    for (int start = 0; start < 65536; start += 509) {
        for (std::size_t sample = 0; sample < planes.levels.size(); ++sample)
            planes.levels[sample] = static_cast<std::uint16_t>(static_cast<std::size_t>(start) + sample * 37);
        std::vector<std::byte> plain(rowLength * 4);
        std::vector<std::byte> vectors(rowLength * 4);
        Scaling::joinPixelsPlain(planes.row(opacity), count, plain.data());
        Scaling::joinPixels(planes.row(opacity), count, vectors.data());
        ASSERT_EQ(vectors, plain) << start;
    }
}

TEST_P(PlaneRows, JoinWhatWasSplit) {
    const auto [opacity, count] = GetParam();
    std::mt19937 random(4);
    std::vector<std::byte> pixels = randomPixels(random);
    for (std::size_t sample = 0; sample < pixels.size(); ++sample)
        pixels[sample] = sample % 4 == 3 ? std::byte{255} : pixels[sample];
    PlaneMemory planes;
    std::vector<std::byte> joined(pixels);
    std::fill_n(joined.begin(), std::ptrdiff_t{count} * 4, std::byte{0});
    Scaling::splitPixels(pixels.data(), count, planes.row(opacity));
    Scaling::joinPixels(planes.row(opacity), count, joined.data());
    EXPECT_EQ(joined, pixels);
}

INSTANTIATE_TEST_SUITE_P(Scaler, PlaneRows,
                         testing::Combine(testing::Values(Opacity::Opaque, Opacity::Transparent),
                                          testing::Values(0, 1, 7, 8, 9, 64, static_cast<int>(rowLength))));

TEST_P(Resamplers, AgreeOnRandomGeometries) {
    std::mt19937 random(11);
    int compared = 0;
    while (compared < 150) {
        const RandomCase job(random);
        const ScaleRequest request = {job.source.constView(), job.region, kernel(), opacity()};
        Picture planar(job.width, job.height);
        if (!Scaling::canResamplePlanar(request, planar.view()))
            continue;
        Picture packed(job.width, job.height);
        ASSERT_TRUE(Scaling::resamplePlanar(request, planar.view()));
        Scaling::resamplePacked(request, packed.view());
        ASSERT_LE(worstDifference(planar, packed), 1)
            << job.source.width << " by " << job.source.height << " at " << job.region.x << ','
            << job.region.y << ' ' << job.region.width << " by " << job.region.height << " to " << job.width
            << " by " << job.height;
        ++compared;
    }
}

INSTANTIATE_TEST_SUITE_P(Scaler, Resamplers, everyFilter(), filterName);

} // namespace GdiplusBackend::ScalingTest
