#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"

#include <cstdio> // jpeglib.h needs FILE

#include <jpeglib.h>

#include <array>
#include <functional>

namespace GdiplusBackend {

/// Writes JPEG files, at best quality unless told otherwise.
class JpegBuilder {
public:
    /// The samples of a pixel in the order of the colour space.
    using Picture = std::function<std::array<int, 4>(int x, int y)>;

    JpegBuilder(int pixelsWide, int pixelsHigh, Picture samples)
        : width(pixelsWide)
        , height(pixelsHigh)
        , picture(std::move(samples)) {}

    JpegBuilder& grey() { return spaces(JCS_GRAYSCALE, JCS_GRAYSCALE); }
    JpegBuilder& rgbUntransformed() { return spaces(JCS_RGB, JCS_RGB); }
    JpegBuilder& cmyk() { return spaces(JCS_CMYK, JCS_CMYK); }
    JpegBuilder& ycck() { return spaces(JCS_CMYK, JCS_YCCK); }
    JpegBuilder& withoutAdobeMarker();
    JpegBuilder& progressive();
    JpegBuilder& arithmetic();
    /// Huffman tables made for the picture.
    JpegBuilder& optimised();
    JpegBuilder& quality(int percent);
    /// The sampling factors of the first component; the others have 1. A colour picture has 2 by 2 else.
    JpegBuilder& sampling(int x, int y);
    /// Each component in a scan of its own.
    JpegBuilder& notInterleaved();
    JpegBuilder& restartEvery(unsigned int blocks);
    JpegBuilder& density(UINT8 unit, UINT16 x, UINT16 y);
    /// An APP1 segment with the identifier of Exif.
    JpegBuilder& exif(const Bytes& tiff);
    /// As many APP2 segments as `profile` needs.
    JpegBuilder& iccProfile(Bytes profile);

    Bytes build() const;

private:
    JpegBuilder& spaces(J_COLOR_SPACE given, J_COLOR_SPACE stored);
    JpegBuilder& set(std::function<void(jpeg_compress_struct&)> change);
    void writeRows(jpeg_compress_struct& info) const;

    int width;
    int height;
    Picture picture;
    J_COLOR_SPACE input = JCS_RGB;
    J_COLOR_SPACE file = JCS_YCbCr;
    std::vector<std::function<void(jpeg_compress_struct&)>> changes;
    Bytes exifBlock;
    Bytes profileBlock;
};

} // namespace GdiplusBackend
