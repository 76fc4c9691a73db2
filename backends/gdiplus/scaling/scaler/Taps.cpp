#include "gdiplus/scaling/scaler/Taps.h"

namespace GdiplusBackend::Scaling {

namespace {

double linearWeight(double distance) {
    return std::max(1 - distance, 0.0);
}

// R. Keys, "Cubic convolution interpolation for digital image processing", 1981, with a = -1/2.
double cubicWeight(double distance) {
    constexpr double a = -0.5;
    if (distance < 1)
        return ((a + 2) * distance - (a + 3)) * distance * distance + 1;
    if (distance < 2)
        return ((a * distance - 5 * a) * distance + 8 * a) * distance - 4 * a;
    return 0;
}

double kernelWeight(Kernel kernel, double distance) {
    return kernel == Kernel::Cubic ? cubicWeight(distance) : linearWeight(distance);
}

} // namespace

Taps::Taps(const Axis& axis, Kernel kernel, int sourceLength)
    : lowestPixel(sourceLength) {
    const double widening = std::max(axis.step(), 1.0);
    offsets.push_back(0);
    for (int pixel = 0; pixel < axis.target; ++pixel)
        addTargetPixel(axis.start + (pixel + 0.5) * axis.step(), widening, kernel, sourceLength);
}

void Taps::addTargetPixel(double center, double widening, Kernel kernel, int sourceLength) {
    const double radius = kernelRadius(kernel) * widening;
    const int from = static_cast<int>(std::floor(center - radius));
    const int to = static_cast<int>(std::ceil(center + radius));
    const int first = std::clamp(from, 0, sourceLength - 1);
    const int last = std::clamp(to, 0, sourceLength - 1);

    std::vector<double> weights(static_cast<std::size_t>(last - first + 1));
    double sum = 0;
    for (int pixel = from; pixel <= to; ++pixel) {
        const double weight = kernelWeight(kernel, std::abs(pixel + 0.5 - center) / widening);
        weights[static_cast<std::size_t>(std::clamp(pixel, first, last) - first)] += weight;
        sum += weight;
    }
    for (const double weight : weights)
        allWeights.push_back(static_cast<float>(weight / sum));
    firsts.push_back(first);
    offsets.push_back(allWeights.size());
    lowestPixel = std::min(lowestPixel, first);
    endPixel = std::max(endPixel, last + 1);
}

} // namespace GdiplusBackend::Scaling
