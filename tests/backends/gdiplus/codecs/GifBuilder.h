#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"

#include <array>
#include <functional>
#include <optional>

namespace GdiplusBackend {

using GifPalette = std::vector<std::array<int, 3>>; ///< R, G, B; a power of two of them

/// `count` colours that differ: entry i is (i, 255 - i, i / 2).
GifPalette gifColours(int count);

struct GifFrameSpec {
    int left = 0;
    int top = 0;
    int width = 1;
    int height = 1;
    bool interlaced = false;
    GifPalette palette = {}; ///< local; empty: the global one
    std::optional<int> transparentIndex = {};
    std::function<int(int x, int y)> index = [](int, int) { return 0; };
};

/// Writes GIF files.
class GifBuilder {
public:
    GifBuilder(int screenWidth, int screenHeight, GifPalette globalPalette = {});

    GifBuilder& frame(GifFrameSpec spec);

    Bytes build() const;

private:
    int width;
    int height;
    GifPalette palette;
    std::vector<GifFrameSpec> frames;
};

} // namespace GdiplusBackend
