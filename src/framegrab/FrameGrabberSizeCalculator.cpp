#include "framegrab/FrameGrabberSizeCalculator.h"

#include "framegrab/Truncated.h"

#include <cstdint>
#include <stdexcept>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::Size;

void Validate(const Size& source, const Size& requested) {
    if (requested.width < 0 || requested.height < 0)
        throw std::invalid_argument(
            "FrameGrabberSizeCalculator::calculateOutputSize: requestedSize cannot be negative");
    if (source.width <= 0 || source.height <= 0)
        throw std::invalid_argument(
            "FrameGrabberSizeCalculator::calculateOutputSize: sourceImageSize must be > 0");
}

double RatioOf(const Size& size) {
    return static_cast<double>(size.width) / size.height;
}

// Deliberate: no length is held at 1 or above, so that a very flat source may lose one.
Size OfWidth(std::int32_t width, double ratio) {
    return {width, Truncated<std::int32_t>(width / ratio)};
}

Size OfHeight(std::int32_t height, double ratio) {
    return {Truncated<std::int32_t>(height * ratio), height};
}

} // namespace

Size FrameGrabberSizeCalculator::calculateOutputSize(Size sourceImageSize, Size requestedSize) {
    Validate(sourceImageSize, requestedSize);
    if (requestedSize == Size{0, 0})
        return sourceImageSize;

    const double sourceRatio = RatioOf(sourceImageSize);
    if (requestedSize.width == 0)
        return OfHeight(requestedSize.height, sourceRatio);
    if (requestedSize.height == 0)
        return OfWidth(requestedSize.width, sourceRatio);

    const double requestedRatio = RatioOf(requestedSize);
    if (sourceRatio > requestedRatio)
        return OfWidth(requestedSize.width, sourceRatio);
    if (requestedRatio > sourceRatio)
        return OfHeight(requestedSize.height, sourceRatio);
    return requestedSize;
}

} // namespace KestoThumbnailer
