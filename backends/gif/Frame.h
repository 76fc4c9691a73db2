#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace GifBackend {

using Palette = std::vector<std::uint32_t>; ///< 0xFFRRGGBB

/// The logical screen (GIF89a, 18).
struct Screen {
    int width = 0;
    int height = 0;
    Palette palette = {}; ///< the global one; may be empty
    std::uint8_t backgroundIndex = 0;
};

/// What becomes of a frame's area before the next frame is drawn (GIF89a, 23).
enum class Disposal : std::uint8_t { Keep, Clear, Restore };

/// What stands before the pixels of a frame (GIF89a, 20 and 23).
struct Frame {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool interlaced = false;
    Disposal disposal = Disposal::Keep;
    std::optional<std::uint8_t> transparentIndex = {};
    int delay = 0;                  ///< as the file tells it, in hundredths of a second
    int localColours = 0;           ///< 0: the global palette counts
    std::uint64_t palettePlace = 0; ///< of the local palette in the file
    std::uint64_t pixelsPlace = 0;  ///< of the byte that tells the smallest code size
    bool lacksPixels = false;       ///< was found out in unpacking
};

/// Lines `first`, `first + step` and so on; a frame that is not interlaced has one pass of all.
struct InterlacePass {
    int first;
    int step;
};

/// GIF89a, appendix E.
constexpr std::array<InterlacePass, 4> interlacePasses = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};

} // namespace GifBackend
