#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/codecs/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace GdiplusBackend {

enum class WebpCoding { Lossy, Lossless };

/// What the chunks of a WebP file tell (WebP Container Specification).
struct WebpHeader {
    int width = 0; ///< of the canvas
    int height = 0;
    bool hasAlpha = false;
    bool animated = false;
    WebpCoding coding = WebpCoding::Lossless; ///< of the still picture
    /// The bytes that make up the picture: the whole file, or an animation's first frame.
    std::uint64_t pictureStart = 0;
    std::uint64_t pictureBytes = 0;
    int left = 0; ///< of the first frame on the canvas
    int top = 0;
    std::vector<std::byte> iccProfile = {};
    std::vector<std::byte> exif = {};
};

/// Hops from chunk to chunk; of the picture itself only its first bytes are read. `Aborted` if the file is
/// shorter than it says.
Result<WebpHeader> readWebpHeader(const ByteSource& source);

} // namespace GdiplusBackend
