#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/codecs/ByteSource.h"

#include <array>
#include <memory>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// The order of the samples in a decoded row.
enum class RowLayout {
    Bits1, ///< palette indices, the leftmost pixel in the highest bit
    Bits4, ///< palette indices, the left pixel in the high half
    Index8,
    Bgr24,
    Bgrx32, ///< fourth byte undefined
    Bgra32, ///< alpha not premultiplied
    Cmyk32, ///< C, M, Y, K; 0 is no ink
};

/// The pixel format whose memory looks like rows of `layout`.
constexpr Gdiplus::PixelFormat pixelFormatOf(RowLayout layout) {
    switch (layout) {
    case RowLayout::Bits1:
        return PixelFormat1bppIndexed;
    case RowLayout::Bits4:
        return PixelFormat4bppIndexed;
    case RowLayout::Index8:
        return PixelFormat8bppIndexed;
    case RowLayout::Bgr24:
        return PixelFormat24bppRGB;
    case RowLayout::Bgrx32:
        return PixelFormat32bppRGB;
    case RowLayout::Bgra32:
        return PixelFormat32bppARGB;
    case RowLayout::Cmyk32:
        return PixelFormat32bppCMYK;
    }
    return PixelFormatUndefined;
}

constexpr int bitsPerPixel(RowLayout layout) {
    return static_cast<int>(GetPixelFormatSize(pixelFormatOf(layout)));
}

/// What a header tells before any pixel is decoded.
struct PictureFacts {
    /// What the bitmap reports.
    Gdiplus::PixelFormat pixelFormat() const { return pixelFormatOf(layout); }

    int width = 0; ///< in pixels, as stored: orientation is not applied
    int height = 0;
    RowLayout layout = RowLayout::Bgra32;
    std::vector<Gdiplus::ARGB> palette; ///< not empty exactly for the three index layouts
    GUID rawFormat = Gdiplus::ImageFormatUndefined;
    UINT flags = 0; ///< `ImageFlags...`
    float dpiX = 96;
    float dpiY = 96;
    std::vector<std::byte> iccProfile; ///< ICC.1; empty: sRGB, or the usual meaning of the layout
    std::vector<std::byte> exif;       ///< Exif (CIPA DC-008) from its TIFF header on, without "Exif\0\0"
    /// The denominators of reduced sizes that the decoder can give faster than the full size, ascending;
    /// 1 is not listed.
    std::span<const int> reductions = {};
};

/// Width and height of a picture at a reduced size: rounded up.
constexpr int reducedLength(int length, int denominator) {
    return (length + denominator - 1) / denominator;
}

/// Takes decoded rows from the top, each exactly once and in order. `row` lives for the call only.
class RowSink {
public:
    virtual ~RowSink() = default;
    virtual void putRow(std::span<const std::byte> row) = 0;
};

/// One opened picture. Immutable: every call of `decode` starts anew from the byte source, so any number of
/// threads may decode at once.
class PictureDecoder {
public:
    virtual ~PictureDecoder() = default;

    const PictureFacts& facts() const { return pictureFacts; }

    /// Gives `reducedLength(height, reduction)` rows of `reducedLength(width, reduction)` pixels in
    /// `facts().layout` to `sink`. `reduction` is 1 or one of `facts().reductions`. On failure some rows may
    /// have been given already. A file that ends before the picture does is `Aborted`, even if all pixels
    /// came out.
    virtual Result<void> decode(int reduction, RowSink& sink) const = 0;

protected:
    explicit PictureDecoder(PictureFacts facts)
        : pictureFacts(std::move(facts)) {}

private:
    PictureFacts pictureFacts;
};

} // namespace GdiplusBackend
