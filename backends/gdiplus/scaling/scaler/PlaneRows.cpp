#include "gdiplus/scaling/scaler/PlaneRows.h"

#include "gdiplus/scaling/scaler/PlaneRowsSse2.h"

#include <algorithm>

namespace GdiplusBackend::Scaling {

namespace {

std::uint16_t toLevel(std::byte sample) {
    return static_cast<std::uint16_t>((std::to_integer<int>(sample) << fractionBits) + zeroLevel);
}

std::byte toSample(std::uint16_t level) {
    const int sample = (level - zeroLevel + (1 << (fractionBits - 1))) >> fractionBits;
    return static_cast<std::byte>(std::clamp(sample, 0, 255));
}

} // namespace

void splitPixels(const std::byte* pixels, int count, const PlaneRow& planes) {
    const int done = splitPixelsSse2(pixels, count, planes);
    splitPixelsPlain(pixels + std::ptrdiff_t{done} * 4, count - done, planes + done);
}

void fillPixels(const std::byte* pixel, int count, const PlaneRow& planes) {
    std::fill_n(planes.blue, count, toLevel(pixel[0]));
    std::fill_n(planes.green, count, toLevel(pixel[1]));
    std::fill_n(planes.red, count, toLevel(pixel[2]));
    if (planes.alpha)
        std::fill_n(planes.alpha, count, toLevel(pixel[3]));
}

void joinPixels(const PlaneRow& planes, int count, std::byte* pixels) {
    const int done = joinPixelsSse2(planes, count, pixels);
    joinPixelsPlain(planes + done, count - done, pixels + std::ptrdiff_t{done} * 4);
}

void splitPixelsPlain(const std::byte* pixels, int count, const PlaneRow& planes) {
    for (int x = 0; x < count; ++x, pixels += 4) {
        planes.blue[x] = toLevel(pixels[0]);
        planes.green[x] = toLevel(pixels[1]);
        planes.red[x] = toLevel(pixels[2]);
        if (planes.alpha)
            planes.alpha[x] = toLevel(pixels[3]);
    }
}

void joinPixelsPlain(const PlaneRow& planes, int count, std::byte* pixels) {
    for (int x = 0; x < count; ++x, pixels += 4) {
        const std::byte alpha = planes.alpha ? toSample(planes.alpha[x]) : std::byte{255};
        pixels[0] = std::min(toSample(planes.blue[x]), alpha);
        pixels[1] = std::min(toSample(planes.green[x]), alpha);
        pixels[2] = std::min(toSample(planes.red[x]), alpha);
        pixels[3] = alpha;
    }
}

} // namespace GdiplusBackend::Scaling
