#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/tiffdecoder/TiffHandle.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace GdiplusBackend {

enum class TiffColours {
    Indexed, ///< one sample: a grey level or a palette index
    Rgb,
    Cmyk,
    ByLibrary, ///< what only libtiff's own conversion knows: separate planes, subsampled YCbCr, CIE L*a*b*
               ///< ...
};

enum class TiffAlpha { None, Straight, Premultiplied };

/// How a directory's samples are to be read (TIFF 6.0).
struct TiffShape {
    int width = 0;
    int height = 0;
    int bitsPerSample = 1;
    int samplesPerPixel = 1;
    TiffColours colours = TiffColours::ByLibrary;
    TiffAlpha alpha = TiffAlpha::None;
    bool separatePlanes = false;
    bool greyScale = false;
    /// For `Indexed`: B, G, R of each value after it was brought to 8 bits, or of each index.
    std::array<std::array<std::byte, 3>, 256> table = {};
    bool valuesAreIndices = false;

    int channels() const { return alpha == TiffAlpha::None ? 3 : 4; }
    /// Bytes of a row of samples, those of all planes together.
    std::uint64_t packedRowBytes() const {
        return (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(samplesPerPixel) *
                    static_cast<std::uint64_t>(bitsPerSample) +
                7) /
               8;
    }
};

/// Reads the first directory's tags, and asks libtiff for RGB where a JPEG inside holds YCbCr.
/// `UnknownImageFormat` for kinds that can't be shown, like floating-point samples.
Result<TiffShape> readTiffShape(const TiffHandle& handle);

/// Resolution, orientation (as a minimal Exif block) and colour profile, beside what the shape tells.
PictureFacts readTiffFacts(const TiffHandle& handle, const TiffShape& shape);

} // namespace GdiplusBackend
