#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/bmpdecoder/BmpHeader.h"

namespace GdiplusBackend {

/// How the pixels of one BMP file become rows of a layout.
class BmpSamples {
public:
    explicit BmpSamples(const BmpHeader& header);

    static RowLayout layoutOf(const BmpHeader& header);

    /// A row of the layout made of a row of the file: that row itself where they are the same. Lives until
    /// the next call.
    std::span<const std::byte> converted(std::span<const std::byte> row);

private:
    /// One colour out of the bits that a mask picks.
    class Channel {
    public:
        explicit Channel(std::uint32_t bits);
        std::byte of(std::uint32_t pixel) const;

    private:
        std::uint32_t mask;
        unsigned int shift;
        std::uint32_t brightest;
        std::array<std::byte, 256> levels = {}; ///< for up to 8 bits
    };

    std::uint32_t width;
    int bitsPerPixel;
    bool asTheyAre;
    std::array<Channel, 3> channels; ///< red, green, blue
    std::vector<std::byte> out;
};

} // namespace GdiplusBackend
