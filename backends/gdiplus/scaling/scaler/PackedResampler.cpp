#include "gdiplus/scaling/scaler/PackedResampler.h"

#include "gdiplus/scaling/scaler/EdgeRow.h"
#include "gdiplus/scaling/scaler/Taps.h"

#include <array>

namespace GdiplusBackend::Scaling {

namespace {

constexpr std::size_t samplesPerPixel = 4;
constexpr std::size_t alphaSample = 3;

void addWeighted(const std::byte* row, float weight, std::span<float> sums) {
    for (std::size_t sample = 0; sample < sums.size(); ++sample)
        sums[sample] += weight * static_cast<float>(static_cast<std::uint8_t>(row[sample]));
}

std::array<float, samplesPerPixel> weightedSum(const float* pixels, std::span<const float> weights) {
    std::array<float, samplesPerPixel> sum = {};
    for (const float weight : weights) {
        for (std::size_t sample = 0; sample < samplesPerPixel; ++sample)
            sum[sample] += weight * pixels[sample];
        pixels += samplesPerPixel;
    }
    return sum;
}

std::uint8_t toByte(float value) {
    const float halfAbove = std::clamp(value, 0.0F, 255.0F) + 0.5F;
    return static_cast<std::uint8_t>(halfAbove);
}

void storePixel(const std::array<float, samplesPerPixel>& sum, Opacity opacity, std::byte* out) {
    const std::uint8_t alpha = opacity == Opacity::Opaque ? std::uint8_t{255} : toByte(sum[alphaSample]);
    for (std::size_t sample = 0; sample < alphaSample; ++sample)
        out[sample] = static_cast<std::byte>(std::min(toByte(sum[sample]), alpha));
    out[alphaSample] = static_cast<std::byte>(alpha);
}

} // namespace

void resamplePacked(const ScaleRequest& request, const PixelView& target) {
    const ConstPixelView& source = request.source;
    const Taps columns(horizontalAxis(request, target), request.kernel, source.width);
    const Taps rows(verticalAxis(request, target), request.kernel, source.height);
    std::vector<float> sums(static_cast<std::size_t>(columns.end() - columns.lowest()) * samplesPerPixel);

    for (int y = 0; y < target.height; ++y) {
        std::fill(sums.begin(), sums.end(), 0.0F);
        int sourceRow = rows.first(y);
        for (const float weight : rows.weights(y)) {
            addWeighted(source.row(sourceRow) + columns.lowest() * bytesPerPixel, weight, sums);
            ++sourceRow;
        }
        std::byte* out = target.row(y);
        for (int x = 0; x < target.width; ++x, out += bytesPerPixel) {
            const auto start = static_cast<std::size_t>(columns.first(x) - columns.lowest());
            storePixel(weightedSum(sums.data() + start * samplesPerPixel, columns.weights(x)),
                       request.opacity, out);
        }
    }
}

} // namespace GdiplusBackend::Scaling
