#pragma once

#include "backends/gdiplus/encoders/TestPicture.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// What the plain libraries read out of a file. Fields that a format does not have stay at their defaults.
struct Decoded {
    int width = 0;
    int height = 0;
    Pixels pixels; ///< not premultiplied, from the top row on
    int bitsPerPixel = 0;
    double dpiX = 0;
    double dpiY = 0;
    std::vector<Gdiplus::ARGB> palette;
    std::optional<int> transparentIndex;

    Gdiplus::ARGB at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

using Decode = Decoded (*)(std::span<const std::byte> file);

// Each makes the test fail when the file is not sound.
Decoded decodeBmp(std::span<const std::byte> file);
Decoded decodeGif(std::span<const std::byte> file);
Decoded decodeTiff(std::span<const std::byte> file);
Decoded decodePng(std::span<const std::byte> file);

struct DecodedJpeg : Decoded {
    int components = 0;
    bool isBaseline = false;
    std::array<int, 2> lumaSampling{};       ///< horizontal, vertical, against chroma's 1x1
    std::vector<std::array<int, 64>> tables; ///< in the order of rows, not zigzag
};
DecodedJpeg decodeJpeg(std::span<const std::byte> file);

struct TiffTags {
    int compression = 0;
    int predictor = 0;
    int photometric = 0;
    int bitsPerSample = 0;
    int samplesPerPixel = 0;
    std::vector<int> extraSamples;
};
TiffTags tagsOfTiff(std::span<const std::byte> file);

std::uint32_t littleEndian(std::span<const std::byte> file, std::size_t offset, std::size_t size);

/// Mean over all pixels and channels of the absolute differences of red, green and blue.
double meanDifference(const Pixels& first, const Pixels& second);

} // namespace GdiplusBackend
