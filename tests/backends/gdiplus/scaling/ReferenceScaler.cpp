#include "backends/gdiplus/scaling/Pictures.h"

#include <cmath>

namespace GdiplusBackend::ScalingTest {

namespace {

double kernelValue(Kernel kernel, double x) {
    x = std::abs(x);
    if (kernel == Kernel::Linear)
        return x < 1 ? 1 - x : 0;
    if (x < 1)
        return 1.5 * x * x * x - 2.5 * x * x + 1;
    return x < 2 ? -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2 : 0;
}

/// The weights of `count` source pixels from `first` on, edges repeated, for one target pixel.
struct Weights {
    int first;
    std::vector<double> values;
};

Weights weightsAt(Kernel kernel, double center, double widening, int length) {
    const int from = static_cast<int>(std::floor(center - 3 * widening)) - 2;
    const int to = static_cast<int>(std::ceil(center + 3 * widening)) + 2;
    Weights weights = {std::clamp(from, 0, length - 1), {}};
    const int last = std::clamp(to, 0, length - 1);
    weights.values.resize(static_cast<std::size_t>(last - weights.first) + 1);
    double sum = 0;
    for (int pixel = from; pixel <= to; ++pixel) {
        const double weight = kernelValue(kernel, (pixel + 0.5 - center) / widening);
        weights.values[static_cast<std::size_t>(std::clamp(pixel, 0, length - 1) - weights.first)] += weight;
        sum += weight;
    }
    for (double& weight : weights.values)
        weight /= sum;
    return weights;
}

using Sums = std::array<double, 4>;

void addWeighted(Sums& sums, double weight, const Sums& samples) {
    for (std::size_t sample = 0; sample < sums.size(); ++sample)
        sums[sample] += weight * samples[sample];
}

std::vector<std::vector<Sums>> scaledAcross(const Picture& source, const Region& region, int width,
                                            Kernel kernel) {
    std::vector<std::vector<Sums>> rows(static_cast<std::size_t>(source.height),
                                        std::vector<Sums>(static_cast<std::size_t>(width)));
    const double step = region.width / width;
    for (int x = 0; x < width; ++x) {
        const Weights weights =
            weightsAt(kernel, region.x + (x + 0.5) * step, std::max(step, 1.0), source.width);
        for (int y = 0; y < source.height; ++y)
            for (std::size_t tap = 0; tap < weights.values.size(); ++tap) {
                const Pixel pixel = source.at(weights.first + static_cast<int>(tap), y);
                addWeighted(rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)],
                            weights.values[tap],
                            {1.0 * pixel[0], 1.0 * pixel[1], 1.0 * pixel[2], 1.0 * pixel[3]});
            }
    }
    return rows;
}

Pixel rounded(const Sums& sums, Opacity opacity) {
    Pixel pixel;
    for (std::size_t sample = 0; sample < pixel.size(); ++sample)
        pixel[sample] = static_cast<int>(std::lround(std::clamp(sums[sample], 0.0, 255.0)));
    if (opacity == Opacity::Opaque)
        pixel[3] = 255;
    for (std::size_t sample = 0; sample < 3; ++sample)
        pixel[sample] = std::min(pixel[sample], pixel[3]);
    return pixel;
}

} // namespace

Picture referenceScaled(const Picture& source, const Region& region, int width, int height, Kernel kernel,
                        Opacity opacity) {
    const std::vector<std::vector<Sums>> across = scaledAcross(source, region, width, kernel);
    const double step = region.height / height;
    Picture target(width, height);
    for (int y = 0; y < height; ++y) {
        const Weights weights =
            weightsAt(kernel, region.y + (y + 0.5) * step, std::max(step, 1.0), source.height);
        for (int x = 0; x < width; ++x) {
            Sums sums = {};
            for (std::size_t tap = 0; tap < weights.values.size(); ++tap)
                addWeighted(
                    sums, weights.values[tap],
                    across[static_cast<std::size_t>(weights.first) + tap][static_cast<std::size_t>(x)]);
            target.set(x, y, rounded(sums, opacity));
        }
    }
    return target;
}

} // namespace GdiplusBackend::ScalingTest
