#include "gdiplus/image/DrawGeometry.h"

#include <algorithm>
#include <cmath>

namespace GdiplusBackend {

namespace {

/// Makes a length positive; true if it was negative.
bool straighten(double& start, double& length) {
    if (length >= 0)
        return false;
    start += length;
    length = -length;
    return true;
}

bool isFinite(const DrawAxis& axis) {
    return std::isfinite(axis.targetStart) && std::isfinite(axis.targetLength) &&
           std::isfinite(axis.sourceStart) && std::isfinite(axis.sourceLength);
}

} // namespace

PaintedAxis cutToPicture(DrawAxis axis, int pictureSize, int targetSize) {
    PaintedAxis painted;
    if (!isFinite(axis))
        return painted;
    painted.mirrored =
        straighten(axis.targetStart, axis.targetLength) != straighten(axis.sourceStart, axis.sourceLength);
    if (axis.targetLength == 0 || axis.sourceLength == 0)
        return painted;
    if (painted.mirrored)
        axis.sourceStart = pictureSize - (axis.sourceStart + axis.sourceLength);

    const double targetPerSource = axis.targetLength / axis.sourceLength;
    const double sourcePerTarget = axis.sourceLength / axis.targetLength;
    const double pictureBegins = axis.targetStart - axis.sourceStart * targetPerSource;
    const double pictureEnds = pictureBegins + pictureSize * targetPerSource;
    const double begin = std::max(axis.targetStart, pictureBegins);
    const double end = std::min(axis.targetStart + axis.targetLength, pictureEnds);
    // A pixel belongs to the stretch that holds its centre, half a pixel behind its start.
    const double first = std::clamp(std::ceil(begin - 0.5), 0.0, static_cast<double>(targetSize));
    const double last = std::clamp(std::ceil(end - 0.5), 0.0, static_cast<double>(targetSize));
    painted.first = static_cast<int>(first);
    painted.last = static_cast<int>(last);
    painted.sourceStart = axis.sourceStart + (first - axis.targetStart) * sourcePerTarget;
    painted.sourceLength = (last - first) * sourcePerTarget;
    return painted;
}

} // namespace GdiplusBackend
