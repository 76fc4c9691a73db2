#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/codecs/ByteSource.h"
#include "gif/Frame.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace GdiplusBackend {

/// What stands before the pixels of a frame.
struct GifFrame {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool interlaced = false;
    std::vector<Gdiplus::ARGB> palette = {}; ///< local, or else global; all opaque
    std::optional<int> transparentIndex = {};
};

struct GifHeader {
    int screenWidth = 0; ///< 0 by 0 in the file: as far as the first frame reaches
    int screenHeight = 0;
    GifFrame firstFrame = {};
    bool isAnimated = false;
};

/// Walks over the blocks without decoding any, up to the second frame or the trailer.
Result<GifHeader> readGifHeader(const ByteSource& source);

/// Whether the blocks lead to the trailer: `Aborted` if the file ends before.
Result<void> checkGifTrailer(const ByteSource& source);

} // namespace GdiplusBackend
