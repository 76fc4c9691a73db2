#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace TestSupport {

enum class JpegColors { Rgb, Cmyk };

/// A JPEG file (ITU-T T.81) of quality 100 without chroma subsampling, so that blocks of 8 by 8 pixels of one
/// colour come out nearly exact.
struct JpegFile {
    int width = 0;
    int height = 0;
    JpegColors colors = JpegColors::Rgb;
    /// 0xRRGGBB, or 0xCCMMYYKK as stored: Adobe's files keep the complement, so 0xFF is no ink.
    std::function<std::uint32_t(int x, int y)> pixelAt;
    int orientation = 0; ///< the Exif tag (CIPA DC-008); 0: no Exif segment
    std::string iccProfile = {};

    std::vector<unsigned char> bytes() const;
};

} // namespace TestSupport
