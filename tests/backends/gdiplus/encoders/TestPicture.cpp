#include "backends/gdiplus/encoders/TestPicture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace GdiplusBackend {

TestPicture::TestPicture(int pictureWidth, int pictureHeight, Gdiplus::PixelFormat pixelFormat,
                         RowsInMemory rows)
    : width(pictureWidth)
    , height(pictureHeight)
    , format(pixelFormat)
    , order(rows)
    , stride(alignedStride(pictureWidth, pixelFormat) + 8)
    , memory(stride * static_cast<std::size_t>(pictureHeight), std::byte{0xA5}) {}

TestPicture& TestPicture::paint(const std::function<Gdiplus::ARGB(int x, int y)>& colourAt) {
    const int step = format == PixelFormat32bppARGB ? 4 : 3;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Gdiplus::ARGB colour = colourAt(x, y);
            for (int byte = 0; byte < step; ++byte)
                row(y)[x * step + byte] = static_cast<std::byte>(colour >> 8 * byte);
            shown.push_back(step == 4 ? colour : colour | 0xFF000000);
        }
    }
    return *this;
}

TestPicture& TestPicture::paintIndices(std::vector<Gdiplus::ARGB> colours,
                                       const std::function<int(int x, int y)>& indexAt) {
    palette = std::move(colours);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int index = indexAt(x, y);
            setIndex(x, y, index);
            const auto place = static_cast<std::size_t>(index);
            shown.push_back(place < palette.size() ? palette[place] : 0xFF000000);
        }
    }
    return *this;
}

void TestPicture::setIndex(int x, int y, int index) {
    const int bits = static_cast<int>(GetPixelFormatSize(format));
    const int perByte = 8 / bits;
    const int shift = 8 - bits - x % perByte * bits;
    const int mask = ((1 << bits) - 1) << shift;
    std::byte& byte = row(y)[x / perByte];
    byte = static_cast<std::byte>((std::to_integer<int>(byte) & ~mask) | index << shift);
}

std::ptrdiff_t TestPicture::topOffset() const {
    return order == RowsInMemory::TopDown ? 0 : static_cast<std::ptrdiff_t>(stride) * (height - 1);
}

std::byte* TestPicture::row(int y) {
    const auto step = static_cast<std::ptrdiff_t>(stride);
    return memory.data() + topOffset() + (order == RowsInMemory::TopDown ? step : -step) * y;
}

ConstPixelView TestPicture::view() const {
    const auto step = static_cast<std::ptrdiff_t>(stride);
    return {memory.data() + topOffset(),
            order == RowsInMemory::TopDown ? step : -step,
            width,
            height,
            format,
            palette};
}

Pixels TestPicture::pixels() const {
    return shown;
}

Gdiplus::ARGB colourfulAt(int x, int y) {
    const int number = x * 7 + y * 31;
    return Gdiplus::Color::MakeARGB(static_cast<BYTE>(number * 17), static_cast<BYTE>(number * 5),
                                    static_cast<BYTE>(number * 11 + 64), static_cast<BYTE>(255 - number * 3));
}

Gdiplus::ARGB photoAt(int x, int y) {
    const auto shade = [&](double period, double phase) {
        const double wave = std::sin(x / period + phase) * std::cos(y / (period * 1.3) - phase);
        const int noise = (x * 7919 + y * 104729) % 7 - 3;
        return static_cast<BYTE>(std::lround(128 + 110 * wave) + noise);
    };
    return Gdiplus::Color::MakeARGB(255, shade(41, 0.3), shade(57, 1.1), shade(73, 2.2));
}

std::vector<Gdiplus::ARGB> distinctColours(int count) {
    std::vector<Gdiplus::ARGB> colours(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        colours[static_cast<std::size_t>(i)] = Gdiplus::Color::MakeARGB(
            255, static_cast<BYTE>(i), static_cast<BYTE>(i * 3 + 1), static_cast<BYTE>(255 - i));
    return colours;
}

std::vector<std::byte> encoded(EncodePicture encode, const ConstPixelView& picture,
                               const EncodeOptions& options) {
    MemorySink sink;
    const Result<void> written = encode(picture, options, sink);
    EXPECT_TRUE(written.has_value()) << (written ? "" : written.error().message);
    return std::move(sink.bytes);
}

} // namespace GdiplusBackend
