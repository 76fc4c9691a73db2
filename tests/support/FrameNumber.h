#pragma once

#include <cstddef>
#include <optional>

/// Frame numbers as 4 by 4 blocks of black and white, so that a decoded picture tells which frame it is: 12
/// bits of the number and 4 of a check, the lowest at the top left, row by row. An empty picture passes no
/// check.
namespace FrameNumber {

constexpr int columns = 4;
constexpr int rows = 4;

constexpr unsigned blocksOf(unsigned number) {
    const unsigned check = ~(number ^ number >> 4U ^ number >> 8U) & 0xFU;
    return (number & 0xFFFU) | check << 12U;
}

/// Whether the pixel at `x`, `y` of a picture is white.
constexpr bool isWhite(unsigned number, int x, int y, int width, int height) {
    const int block = y * rows / height * columns + x * columns / width;
    return (blocksOf(number) >> static_cast<unsigned>(block) & 1U) != 0;
}

/// The green at the middle of block `block`.
inline int levelOf(const unsigned char* pixels, int width, int height, int stride, int block) {
    const int x = (block % columns * 2 + 1) * width / (2 * columns);
    const int y = (block / columns * 2 + 1) * height / (2 * rows);
    return pixels[static_cast<std::ptrdiff_t>(y) * stride + static_cast<std::ptrdiff_t>(x) * 4 + 1];
}

/// Reads the number back from 32-bit pixels; nothing where a block is gray or the check fails.
inline std::optional<int> read(const unsigned char* pixels, int width, int height, int stride) {
    constexpr int darkest = 90;
    constexpr int brightest = 165;
    unsigned blocks = 0;
    for (int block = 0; block < columns * rows; ++block) {
        const int level = levelOf(pixels, width, height, stride, block);
        if (level > darkest && level < brightest)
            return std::nullopt;
        blocks |= (level >= brightest ? 1U : 0U) << static_cast<unsigned>(block);
    }
    const unsigned number = blocks & 0xFFFU;
    return blocksOf(number) == blocks ? std::optional(static_cast<int>(number)) : std::nullopt;
}

} // namespace FrameNumber
