#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"

#include <tiffio.h>

#include <functional>

namespace GdiplusBackend {

/// A TIFF file's first directory, and its samples.
struct TiffSpec {
    int width = 1;
    int height = 1;
    int bits = 8;
    int samples = 3;
    int photometric = PHOTOMETRIC_RGB;
    int compression = COMPRESSION_NONE;
    int planes = PLANARCONFIG_CONTIG;
    int rowsPerStrip = 4;
    int tileSide = 0;              ///< 0: strips
    const char* mode = "wl";       ///< `l` or `b` for the byte order, `8` for BigTIFF
    std::vector<int> extra = {};   ///< `EXTRASAMPLE_...`
    std::vector<int> palette = {}; ///< 16-bit values: all reds, all greens, all blues
    int sampleFormat = 0;
    int orientation = 0; ///< 0: without the tag
    int resolutionUnit = 0;
    float dpi = 0;
    Bytes iccProfile = {};
    /// A sample with as many bits as `bits` says.
    std::function<int(int x, int y, int sample)> sample = [](int, int, int) { return 0; };
};

Bytes buildTiff(const TiffSpec& spec);

} // namespace GdiplusBackend
