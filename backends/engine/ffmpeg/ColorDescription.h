#pragma once

#include "engine/ffmpeg/ToneMapper.h"

#include <optional>

struct AVFrame;

namespace EngineBackend {

/// How the numbers of a frame mean colours, for swscale.
struct ColorDescription {
    int format = -1; ///< AVPixelFormat without the ones that stand for full range
    int matrix = 0;  ///< SWS_CS_...
    bool isFullRange = false;
};

/// Where a frame does not tell its matrix it is BT.709 from 1280 columns or 720 rows on, else BT.601, as
/// players take it.
ColorDescription describeColors(const AVFrame& frame);

/// Nothing for a frame of ordinary dynamic range.
std::optional<HdrDescription> describeHdr(const AVFrame& frame);

bool hasAlpha(const AVFrame& frame);

} // namespace EngineBackend
