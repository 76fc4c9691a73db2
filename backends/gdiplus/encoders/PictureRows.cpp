#include "gdiplus/encoders/PictureRows.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace GdiplusBackend {

namespace {

bool isEncodable(Gdiplus::PixelFormat format) {
    switch (format) {
    case PixelFormat1bppIndexed:
    case PixelFormat4bppIndexed:
    case PixelFormat8bppIndexed:
    case PixelFormat24bppRGB:
    case PixelFormat32bppARGB:
        return true;
    default:
        return false;
    }
}

void putRgb(Gdiplus::ARGB color, std::byte* out) {
    out[0] = std::byte{redOf(color)};
    out[1] = std::byte{greenOf(color)};
    out[2] = std::byte{blueOf(color)};
}

void swapRedAndBlue(const std::byte* in, int inStep, std::byte* out, int outStep, int width) {
    for (int x = 0; x < width; ++x, in += inStep, out += outStep) {
        const std::byte blue = in[0];
        const std::byte green = in[1];
        const std::byte red = in[2];
        out[0] = red;
        out[1] = green;
        out[2] = blue;
    }
}

} // namespace

Result<void> checkPicture(const ConstPixelView& picture, const char* kind, std::int64_t longestSide) {
    if (picture.width <= 0 || picture.height <= 0)
        return tl::unexpected(LoadError{Gdiplus::InvalidParameter, "a picture needs a positive size"});
    if (!isEncodable(picture.format))
        return tl::unexpected(LoadError{Gdiplus::InvalidParameter,
                                        fmt::format("no encoder takes pixel format {:#x}", picture.format)});
    if (std::max(picture.width, picture.height) > longestSide)
        return tl::unexpected(LoadError{Gdiplus::GenericError,
                                        fmt::format("a {} file holds at most {} pixels a side, not {}x{}",
                                                    kind, longestSide, picture.width, picture.height)});
    return {};
}

PictureRows::PictureRows(const ConstPixelView& picture)
    : view(picture) {
    if (!IsIndexedPixelFormat(view.format))
        return;
    colours.fill(0xFF000000);
    colourCount = countColours();
    std::copy_n(view.palette.begin(), std::min(view.palette.size(), colourCount), colours.begin());
}

std::size_t PictureRows::countColours() const {
    const std::size_t most = std::size_t{1} << GetPixelFormatSize(view.format);
    if (view.palette.size() >= most)
        return most;
    std::vector<std::uint8_t> row(static_cast<std::size_t>(view.width));
    std::uint8_t highest = 0;
    for (int y = 0; y < view.height; ++y) {
        indices(y, row);
        highest = std::max(highest, *std::max_element(row.begin(), row.end()));
    }
    return std::max(view.palette.size(), std::size_t{highest} + 1);
}

std::span<const std::byte> PictureRows::raw(int y) const {
    return {view.row(y), bytesPerRow(view.width, view.format)};
}

std::uint8_t PictureRows::indexAt(const std::byte* row, int x) const {
    switch (view.format) {
    case PixelFormat1bppIndexed:
        return std::to_integer<std::uint8_t>(row[x / 8] >> (7 - x % 8) & std::byte{1});
    case PixelFormat4bppIndexed:
        return std::to_integer<std::uint8_t>(row[x / 2] >> (x % 2 == 0 ? 4 : 0) & std::byte{15});
    default:
        return std::to_integer<std::uint8_t>(row[x]);
    }
}

void PictureRows::indices(int y, std::span<std::uint8_t> out) const {
    const std::byte* row = view.row(y);
    for (int x = 0; x < view.width; ++x)
        out[static_cast<std::size_t>(x)] = indexAt(row, x);
}

void PictureRows::rgb(int y, std::span<std::byte> out) const {
    const std::byte* row = view.row(y);
    if (view.format == PixelFormat24bppRGB)
        return swapRedAndBlue(row, 3, out.data(), 3, view.width);
    if (view.format == PixelFormat32bppARGB)
        return swapRedAndBlue(row, 4, out.data(), 3, view.width);
    std::byte* pixel = out.data();
    for (int x = 0; x < view.width; ++x, pixel += 3)
        putRgb(colours[indexAt(row, x)], pixel);
}

void PictureRows::rgba(int y, std::span<std::byte> out) const {
    const std::byte* row = view.row(y);
    std::byte* pixel = out.data();
    if (view.format == PixelFormat32bppARGB) {
        swapRedAndBlue(row, 4, pixel, 4, view.width);
        for (int x = 0; x < view.width; ++x, row += 4, pixel += 4)
            pixel[3] = row[3];
        return;
    }
    for (int x = 0; x < view.width; ++x, pixel += 4) {
        const Gdiplus::ARGB color = colours[indexAt(row, x)];
        putRgb(color, pixel);
        pixel[3] = std::byte{alphaOf(color)};
    }
}

float knownDotsPerInch(float dotsPerInch) {
    return dotsPerInch > 0 && std::isfinite(dotsPerInch) ? dotsPerInch : 96;
}

std::uint32_t dotsPerMetre(float dotsPerInch) {
    constexpr double metresPerInch = 0.0254;
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::uint32_t>(
        std::lround(std::min(double{knownDotsPerInch(dotsPerInch)} / metresPerInch, most)));
}

std::uint16_t wholeDotsPerInch(float dotsPerInch) {
    return static_cast<std::uint16_t>(std::lround(std::clamp(knownDotsPerInch(dotsPerInch), 1.0F, 65535.0F)));
}

} // namespace GdiplusBackend
