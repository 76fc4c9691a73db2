#pragma once

#include "gdiplus/codecs/ByteSource.h"

#include <string_view>

namespace GdiplusBackend {

/// ISO/IEC 15948, 11.2.2.
enum class PngColour { Grey = 0, Rgb = 2, Palette = 3, GreyAlpha = 4, RgbAlpha = 6 };

/// What a PNG file tells before its image data. Its values fit together as the standard asks.
struct PngHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int bitDepth = 0;
    PngColour colour = PngColour::Grey;
    bool interlaced = false;
    std::vector<std::byte> palette;      ///< R, G, B for each entry
    std::vector<std::byte> transparency; ///< tRNS as stored, of the right length; empty: none
    std::vector<std::byte> iccProfile;   ///< empty where the file says sRGB
    std::uint32_t pixelsPerMetreX = 0;   ///< 0: not stated
    std::uint32_t pixelsPerMetreY = 0;
    std::uint64_t imageData = 0; ///< where the first IDAT chunk starts

    int bitsPerPixel() const;
    /// Bytes of a row of so many pixels, without its filter byte.
    std::size_t rowBytes(std::uint32_t pixels) const;
};

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1A\n";

Result<PngHeader> readPngHeader(const ByteSource& source);

} // namespace GdiplusBackend
