#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"

namespace GdiplusBackend {

/// Writes BMP files: the header's fields as they are set here, then what was appended.
struct BmpBuilder {
    std::int32_t width = 0;
    std::int32_t height = 0; ///< negative: top-down
    int bits = 24;
    std::uint32_t coding = 0;
    std::uint32_t headerSize = 40; ///< 12: OS/2's short one
    std::uint32_t coloursUsed = 0;
    std::uint32_t perMetre = 0;
    std::vector<std::uint32_t> masks = {}; ///< in the header if it is long enough, else behind it
    std::vector<std::uint32_t> palette = {};
    std::uint32_t pixelsAt = 1;   ///< 1: where they are
    std::vector<int> pixels = {}; ///< bytes of the file, padding included

    Bytes build() const;
};

} // namespace GdiplusBackend
