#include "gdiplus/image/GraphicsObject.h"

#include "gdiplus/pixels/Composite.h"
#include "gdiplus/pixels/ConvertPixels.h"
#include "gdiplus/pixels/RotateFlip.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <utility>

namespace GdiplusBackend {

using Gdiplus::InterpolationMode;

namespace {

Kernel kernelFor(InterpolationMode mode) {
    switch (mode) {
    case Gdiplus::InterpolationModeNearestNeighbor:
        return Kernel::Nearest;
    case Gdiplus::InterpolationModeHighQuality:
    case Gdiplus::InterpolationModeBicubic:
    case Gdiplus::InterpolationModeHighQualityBicubic:
        return Kernel::Cubic;
    case Gdiplus::InterpolationModeInvalid:
    case Gdiplus::InterpolationModeDefault:
    case Gdiplus::InterpolationModeLowQuality:
    case Gdiplus::InterpolationModeBilinear:
    case Gdiplus::InterpolationModeHighQualityBilinear:
        break;
    }
    return Kernel::Linear;
}

Gdiplus::RotateFlipType mirroring(bool leftRight, bool topBottom) {
    if (leftRight)
        return topBottom ? Gdiplus::Rotate180FlipNone : Gdiplus::RotateNoneFlipX;
    return topBottom ? Gdiplus::RotateNoneFlipY : Gdiplus::RotateNoneFlipNone;
}

bool isWhole(double value) {
    return value == std::floor(value);
}

/// Whether every painted pixel is one pixel of the picture, unmoved within its grid.
bool isCopy(const PaintedAxis& axis) {
    return !axis.mirrored && axis.sourceLength == axis.length() && isWhole(axis.sourceStart);
}

/// Whether the draw shows the whole of the picture in whole pixels of the target.
bool showsAll(const PaintedAxis& axis, const DrawAxis& asked, int pictureSize) {
    return !axis.mirrored && axis.sourceStart == 0 && axis.sourceLength == pictureSize &&
           asked.targetStart == axis.first && asked.targetLength == axis.length();
}

/// Whether a byte may belong to both, as when a bitmap is drawn onto itself.
bool shareMemory(const ConstPixelView& one, const ConstPixelView& other) {
    const auto extent = [](const ConstPixelView& picture) {
        const std::byte* top = picture.row(0);
        const std::byte* bottom = picture.row(picture.height - 1);
        return std::pair(std::min(top, bottom, std::less<>()),
                         std::max(top, bottom, std::less<>()) + bytesPerRow(picture.width, picture.format));
    };
    const auto [oneBegin, oneEnd] = extent(one);
    const auto [otherBegin, otherEnd] = extent(other);
    return std::less<>()(oneBegin, otherEnd) && std::less<>()(otherBegin, oneEnd);
}

bool isTransparentFormat(const ConstPixelView& picture) {
    if (IsIndexedPixelFormat(picture.format))
        return std::any_of(picture.palette.begin(), picture.palette.end(),
                           [](Gdiplus::ARGB color) { return color >> 24 != 255; });
    return IsAlphaPixelFormat(picture.format);
}

/// The part of a picture that the kernels can reach from a stretch of it, with a margin.
Gdiplus::Rect reachOf(const Region& region, int targetWidth, int targetHeight,
                      const ConstPixelView& picture) {
    const auto reach = [](double start, double length, int targetLength, int size, int& first, int& count) {
        const double margin = 4 * std::max(1.0, length / targetLength) + 2;
        first = static_cast<int>(std::clamp(std::floor(start - margin), 0.0, size - 1.0));
        const int last =
            static_cast<int>(std::clamp(std::ceil(start + length + margin), first + 1.0, size * 1.0));
        count = last - first;
    };
    Gdiplus::Rect rect;
    reach(region.x, region.width, targetWidth, picture.width, rect.X, rect.Width);
    reach(region.y, region.height, targetHeight, picture.height, rect.Y, rect.Height);
    return rect;
}

/// The window of a picture in the form that the scaler takes: where it lies, if it has that form already.
struct ScalerInput {
    PixelBuffer converted;
    ConstPixelView view;
    Opacity opacity = Opacity::Opaque;
};

Result<ScalerInput> prepare(const ConstPixelView& picture, const Gdiplus::Rect& window) {
    ScalerInput input;
    input.opacity = isTransparentFormat(picture) ? Opacity::Transparent : Opacity::Opaque;
    const PixelFormat wanted =
        input.opacity == Opacity::Transparent ? PixelFormat32bppPARGB : PixelFormat32bppRGB;
    if (picture.format == wanted) {
        input.view = cutOut(picture, window);
        return input;
    }
    auto converted = PixelBuffer::create(window.Width, window.Height, wanted);
    if (!converted)
        return tl::unexpected(std::move(converted).error());
    convertPixels(picture, window.X, window.Y, converted->view());
    input.converted = std::move(*converted);
    input.view = input.converted.view();
    return input;
}

Region regionOf(const PaintedAxis& across, const PaintedAxis& down, const ConstPixelView& picture) {
    Region region = {across.sourceStart, down.sourceStart, across.sourceLength, down.sourceLength};
    if (across.mirrored)
        region.x = picture.width - (across.sourceStart + across.sourceLength);
    if (down.mirrored)
        region.y = picture.height - (down.sourceStart + down.sourceLength);
    return region;
}

/// The painted part of a picture at its final size, premultiplied or opaque 32-bit.
Result<PixelBuffer> scaled(const ConstPixelView& picture, const PaintedAxis& across, const PaintedAxis& down,
                           Kernel kernel) {
    Region region = regionOf(across, down, picture);
    const Gdiplus::Rect window = reachOf(region, across.length(), down.length(), picture);
    const auto input = prepare(picture, window);
    if (!input)
        return tl::unexpected(input.error());
    auto result = PixelBuffer::create(across.length(), down.length(), input->view.format);
    if (!result)
        return result;
    region.x -= window.X;
    region.y -= window.Y;
    if (auto done = scale({input->view, region, kernel, input->opacity}, result->view()); !done)
        return tl::unexpected(std::move(done).error());
    const auto mirror = mirroring(across.mirrored, down.mirrored);
    return mirror == Gdiplus::RotateNoneFlipNone ? std::move(result) : rotateFlip(result->view(), mirror);
}

} // namespace

void GraphicsObject::setInterpolationMode(InterpolationMode value) {
    switch (value) {
    case Gdiplus::InterpolationModeDefault:
    case Gdiplus::InterpolationModeLowQuality:
        mode = Gdiplus::InterpolationModeBilinear;
        break;
    case Gdiplus::InterpolationModeHighQuality:
        mode = Gdiplus::InterpolationModeHighQualityBicubic;
        break;
    default:
        mode = value;
    }
}

Result<PixelView> GraphicsObject::openTarget() {
    if (target.lock())
        return tl::unexpected(LoadError{Gdiplus::WrongState, "the bitmap is locked"});
    return target.pixels();
}

Result<void> GraphicsObject::clear(Gdiplus::ARGB color) {
    const auto canvas = openTarget();
    if (!canvas)
        return tl::unexpected(canvas.error());
    // A colour that nothing can be seen of leaves no trace.
    const std::vector<Gdiplus::ARGB> row(static_cast<std::size_t>(canvas->width),
                                         color >> 24 == 0 ? 0 : color);
    for (int y = 0; y < canvas->height; ++y)
        writeArgb(*canvas, 0, y, canvas->width, row.data());
    return {};
}

Result<void> GraphicsObject::fill(Gdiplus::ARGB color, const Gdiplus::Rect& area) {
    const auto canvas = openTarget();
    if (!canvas)
        return tl::unexpected(canvas.error());
    const auto cut = [](std::int64_t place, int size) {
        return static_cast<int>(std::clamp<std::int64_t>(place, 0, size));
    };
    const int left = cut(area.X, canvas->width);
    const int top = cut(area.Y, canvas->height);
    const int right = cut(std::int64_t{area.X} + area.Width, canvas->width);
    const int bottom = cut(std::int64_t{area.Y} + area.Height, canvas->height);
    if (left < right && top < bottom)
        fillOver(color, *canvas, left, top, right - left, bottom - top);
    return {};
}

Result<void> GraphicsObject::draw(BitmapObject& picture, const DrawAxis& horizontal,
                                  const DrawAxis& vertical) {
    if (picture.lock())
        return tl::unexpected(LoadError{Gdiplus::WrongState, "the picture is locked"});
    const auto canvas = openTarget();
    if (!canvas)
        return tl::unexpected(canvas.error());
    const PaintedAxis across = cutToPicture(horizontal, picture.width(), canvas->width);
    const PaintedAxis down = cutToPicture(vertical, picture.height(), canvas->height);
    if (across.isEmpty() || down.isEmpty())
        return {};
    if (showsAll(across, horizontal, picture.width()) && showsAll(down, vertical, picture.height())) {
        const auto drawn = picture.drawEncoded(across.length(), down.length(), kernelFor(mode));
        if (!drawn)
            return tl::unexpected(drawn.error());
        if (*drawn) {
            sourceOver((*drawn)->view(), *canvas, across.first, down.first);
            return {};
        }
    }
    return drawDecoded(picture, across, down, *canvas);
}

Result<void> GraphicsObject::drawDecoded(BitmapObject& picture, const PaintedAxis& across,
                                         const PaintedAxis& down, const PixelView& canvas) {
    const auto pixels = picture.pixels();
    if (!pixels)
        return tl::unexpected(pixels.error());
    if (isCopy(across) && isCopy(down) && !shareMemory(*pixels, canvas)) {
        const Gdiplus::Rect window(static_cast<int>(across.sourceStart), static_cast<int>(down.sourceStart),
                                   across.length(), down.length());
        if (!IsIndexedPixelFormat(pixels->format)) {
            sourceOver(cutOut(*pixels, window), canvas, across.first, down.first);
            return {};
        }
        const auto input = prepare(*pixels, window);
        if (!input)
            return tl::unexpected(input.error());
        sourceOver(input->view, canvas, across.first, down.first);
        return {};
    }
    const auto result = scaled(*pixels, across, down, kernelFor(mode));
    if (!result)
        return tl::unexpected(result.error());
    sourceOver(result->view(), canvas, across.first, down.first);
    return {};
}

Result<void> GraphicsObject::draw(BitmapObject& picture, int x, int y) {
    const double scaleX = static_cast<double>(target.traits().dpiX) / picture.traits().dpiX;
    const double scaleY = static_cast<double>(target.traits().dpiY) / picture.traits().dpiY;
    return draw(picture, {x * 1.0, picture.width() * scaleX, 0, picture.width() * 1.0},
                {y * 1.0, picture.height() * scaleY, 0, picture.height() * 1.0});
}

} // namespace GdiplusBackend
