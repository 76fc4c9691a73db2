#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"

#include <libheif/heif.h>

#include <functional>

namespace GdiplusBackend {

/// A HEIF file of one picture, coded at the best quality.
struct HeifSpec {
    heif_compression_format coding = heif_compression_HEVC;
    int width = 64;
    int height = 64;
    bool alpha = false;
    heif_orientation orientation = heif_orientation_normal;
    Bytes iccProfile = {};
    std::function<std::uint32_t(int x, int y)> pixel = [](int, int) { return 0xFF000000U; }; ///< 0xAARRGGBB
};

Bytes buildHeif(const HeifSpec& spec);

} // namespace GdiplusBackend
