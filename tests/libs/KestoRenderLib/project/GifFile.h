#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace RenderTests {

/// An animated GIF (GIF89a) of one pixel, whose frames last `hundredths` of a second each and show these
/// 0xRRGGBB colours, at most four.
inline std::vector<unsigned char> gifOf(std::span<const std::uint32_t> colors, int hundredths) {
    std::vector<unsigned char> bytes = {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0x81, 0, 0};
    for (std::size_t i = 0; i < 4; ++i)
        for (const int shift : {16, 8, 0})
            bytes.push_back(i < colors.size() ? static_cast<unsigned char>(colors[i] >> shift) : 0);
    for (std::size_t i = 0; i < colors.size(); ++i) {
        // Graphic control extension, image descriptor, then three codes of 3 bits: clear, the colour, end.
        const auto delay = static_cast<unsigned char>(hundredths);
        const auto codes = static_cast<unsigned char>(4U | i << 3U | 1U << 6U);
        bytes.insert(bytes.end(), {0x21, 0xF9, 4, 4, delay, 0, 0, 0, 0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0});
        bytes.insert(bytes.end(), {2, 2, codes, 1, 0});
    }
    bytes.push_back(0x3B);
    return bytes;
}

} // namespace RenderTests
