#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/pixels/PixelView.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// What an encoder writes into.
class ByteSink {
public:
    virtual ~ByteSink() = default;
    virtual Result<void> write(std::span<const std::byte> bytes) = 0;
};

struct EncodeOptions {
    float dpiX = 96;
    float dpiY = 96;
    std::optional<int> jpegQuality; ///< 0 to 100; empty: 75 with 4:2:0 chroma
};

using EncodePicture = Result<void> (*)(const ConstPixelView& picture, const EncodeOptions& options,
                                       ByteSink& sink);

} // namespace GdiplusBackend
