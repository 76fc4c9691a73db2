#include "gdiplus/scaling/Scaler.h"

#include "gdiplus/scaling/scaler/Axis.h"
#include "gdiplus/scaling/scaler/EdgeRow.h"
#include "gdiplus/scaling/scaler/PackedResampler.h"
#include "gdiplus/scaling/scaler/PlanarResampler.h"
#include "gdiplus/scaling/scaler/Reduction.h"

#include <cstring>
#include <new>

namespace GdiplusBackend {

using namespace Scaling;

namespace {

constexpr double maxBeyondBorder = 65536;

bool isUsable(double start, double length, int sourceLength) {
    return length > 0 && start >= -maxBeyondBorder && start + length <= sourceLength + maxBeyondBorder;
}

bool isUsable(const ConstPixelView& view) {
    return view.top && view.width > 0 && view.height > 0;
}

void makeOpaque(std::byte* row, int width) {
    for (int x = 0; x < width; ++x)
        row[x * bytesPerPixel + 3] = std::byte{255};
}

void copyRows(const ScaleRequest& request, const PixelView& target) {
    const auto left = static_cast<int>(request.region.x);
    const auto top = static_cast<int>(request.region.y);
    for (int y = 0; y < target.height; ++y) {
        copyEdgeRow(edgeRow(request.source, top + y, left, target.width), target.row(y));
        if (request.opacity == Opacity::Opaque)
            makeOpaque(target.row(y), target.width);
    }
}

int nearestPixel(const Axis& axis, int targetPixel, int sourceLength) {
    const double position = std::floor(axis.start + (targetPixel + 0.5) * axis.length / axis.target);
    return static_cast<int>(std::clamp(position, 0.0, sourceLength - 1.0));
}

void pickRows(const ScaleRequest& request, const PixelView& target) {
    const Axis horizontal = horizontalAxis(request, target);
    const Axis vertical = verticalAxis(request, target);
    std::vector<std::ptrdiff_t> columns(static_cast<std::size_t>(target.width));
    for (int x = 0; x < target.width; ++x)
        columns[static_cast<std::size_t>(x)] =
            nearestPixel(horizontal, x, request.source.width) * bytesPerPixel;
    for (int y = 0; y < target.height; ++y) {
        const std::byte* from = request.source.row(nearestPixel(vertical, y, request.source.height));
        std::byte* to = target.row(y);
        for (const std::ptrdiff_t column : columns) {
            std::memcpy(to, from + column, bytesPerPixel);
            to += bytesPerPixel;
        }
        if (request.opacity == Opacity::Opaque)
            makeOpaque(target.row(y), target.width);
    }
}

Result<void> resample(const ScaleRequest& request, const PixelView& target) {
    if (canResamplePlanar(request, target))
        return resamplePlanar(request, target);
    resamplePacked(request, target);
    return {};
}

Result<void> scaleUsable(const ScaleRequest& request, const PixelView& target) {
    if (horizontalAxis(request, target).isCopy() && verticalAxis(request, target).isCopy()) {
        copyRows(request, target);
        return {};
    }
    if (request.kernel == Kernel::Nearest) {
        pickRows(request, target);
        return {};
    }
    if (const std::optional<ReducedSource> reduced = reduceSource(request, target))
        return resample(reduced->request, target);
    return resample(request, target);
}

} // namespace

Result<void> scale(const ScaleRequest& request, const PixelView& target) {
    const Region& region = request.region;
    if (!isUsable(request.source) || !isUsable(target) ||
        !isUsable(region.x, region.width, request.source.width) ||
        !isUsable(region.y, region.height, request.source.height))
        return tl::unexpected(
            LoadError{Gdiplus::InvalidParameter, "nothing to scale, or a region far outside it"});
    try {
        return scaleUsable(request, target);
    } catch (const std::bad_alloc&) {
        return tooLarge("no memory to scale a picture");
    }
}

} // namespace GdiplusBackend
