#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace TestSupport {

/// A PNG file (ISO/IEC 15948) of 8 bits a channel.
struct PngFile {
    int width = 0;
    int height = 0;
    std::function<std::uint32_t(int x, int y)> pixelAt; ///< 0xAARRGGBB; or an index into `palette`
    std::vector<std::uint32_t> palette = {};            ///< 0xRRGGBB; empty: colours with alpha

    std::vector<unsigned char> bytes() const;
};

/// The checksum over a chunk's type and content (ISO/IEC 15948, 5.5).
std::uint32_t pngChecksum(std::span<const unsigned char> typeAndContent);

} // namespace TestSupport
