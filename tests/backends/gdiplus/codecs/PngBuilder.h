#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"

#include <array>
#include <functional>
#include <string_view>

namespace GdiplusBackend {

/// A colour type of PNG with a bit depth.
struct PngKind {
    int colour; ///< ISO/IEC 15948, 11.2.2
    int bitDepth;

    int channels() const { return colour == 2 ? 3 : colour == 4 ? 2 : colour == 6 ? 4 : 1; }
};

/// Writes PNG files.
class PngBuilder {
public:
    /// The samples of a pixel at the file's bit depth.
    using Picture = std::function<std::array<int, 4>(int x, int y)>;

    PngBuilder(int pixelsWide, int pixelsHigh, PngKind ofFile, Picture samples)
        : width(pixelsWide)
        , height(pixelsHigh)
        , kind(ofFile)
        , picture(std::move(samples)) {}

    PngBuilder& interlaced();
    PngBuilder& palette(std::vector<std::array<int, 3>> entries);
    PngBuilder& paletteAlpha(std::vector<int> entries);
    PngBuilder& transparentColour(std::array<int, 3> samples);
    PngBuilder& resolution(unsigned int perMetreX, unsigned int perMetreY);
    /// A number from 0 to 4 for all rows; otherwise each row has the one that packs best.
    PngBuilder& filter(int number);
    /// Image data chunks of at most so many bytes.
    PngBuilder& chunksOf(std::size_t bytes);

    Bytes build() const;

private:
    std::vector<Bytes> packedRows() const;

    int width;
    int height;
    PngKind kind;
    Picture picture;
    bool adam7 = false;
    int oneFilter = -1;
    std::size_t chunkBytes = 8192;
    unsigned int dotsX = 0;
    unsigned int dotsY = 0;
    std::vector<std::array<int, 3>> colours;
    std::vector<int> alphas;
    std::vector<std::array<int, 3>> transparent;
};

/// A whole chunk with its checksum.
Bytes pngChunk(std::string_view type, const Bytes& content);

/// Where the length field of the first chunk of a type stands; the file's size if there is none.
std::size_t placeOfChunk(const Bytes& file, std::string_view type);

/// The file with `inserted` before the first chunk of a type.
Bytes withBytesBefore(const Bytes& file, std::string_view type, const Bytes& inserted);

/// The content of a chunk that says "ICC profile": `profile`, compressed.
Bytes packedProfile(const Bytes& profile);

} // namespace GdiplusBackend
