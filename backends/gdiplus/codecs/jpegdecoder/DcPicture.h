#pragma once

#include "gdiplus/codecs/PictureDecoder.h"

#include <cstdio> // jpeglib.h needs FILE

#include <jpeglib.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace GdiplusBackend {

/// The DC coefficients of one component, a row of blocks after the other.
struct DcPlane {
    int id = 0;
    int samplingX = 1; ///< ITU-T T.81, A.1.1: H and V
    int samplingY = 1;
    int blocksWide = 0; ///< without those that only fill up the last MCU
    int blocksHigh = 0;
    int stride = 0; ///< blocks in a row, with those that fill up
    int quantum = 1;
    std::vector<std::int16_t> dc;

    const std::int16_t* at(int x, int y) const { return dc.data() + std::ptrdiff_t{y} * stride + x; }
    std::int16_t* at(int x, int y) { return dc.data() + std::ptrdiff_t{y} * stride + x; }
};

/// A picture at an eighth of its size: a sample is the mean of a block, which its DC coefficient tells alone.
class DcPicture {
public:
    /// Room for what a header announces; none where that is unusual. Wants the colours of the rows in
    /// `header.out_color_space`.
    static std::optional<DcPicture> forHeader(const jpeg_decompress_struct& header);

    std::vector<DcPlane> planes;
    int mcusWide = 0;
    int mcusHigh = 0;

    /// Grey as it is, colours as blue, green and red. Where chroma has fewer blocks than luma, each serves
    /// several pixels.
    void giveRows(RowSink& sink) const;

private:
    enum class Colours { Grey, YCbCr, Rgb };

    void fillSamples(const DcPlane& plane, int y, std::span<std::uint8_t> samples) const;

    Colours colours = Colours::Grey;
    int width = 0; ///< in pixels of the small picture
    int height = 0;
    int mostX = 1; ///< the greatest sampling factors
    int mostY = 1;
};

} // namespace GdiplusBackend
