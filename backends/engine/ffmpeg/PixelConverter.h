#pragma once

#include "engine/Engine.h"
#include "engine/EngineError.h"
#include "engine/StreamFacts.h"
#include "engine/ffmpeg/BlockAverage.h"
#include "engine/ffmpeg/Handles.h"
#include "engine/ffmpeg/ToneMapper.h"

#include <memory>
#include <vector>

namespace EngineBackend {

/// Makes pictures of decoded frames: colours by the frame's own matrix and range, high dynamic range brought
/// to that of sRGB, scaled, turned upright.
class PixelConverter {
public:
    /// `size` is that of the upright picture. `TooLarge` beyond the pixel budget or without memory.
    Result<std::shared_ptr<const Picture>> convert(const AVFrame& frame, PictureSize size,
                                                   const Orientation& orientation);

private:
    Result<void> scale(const AVFrame& frame, PictureSize size, std::uint8_t* pixels);
    Result<void> scaleInto(const AVFrame& frame, PictureSize size, int format, std::uint8_t* pixels);
    Result<void> scaleHdr(const AVFrame& frame, PictureSize size, const HdrDescription& hdr,
                          std::uint8_t* pixels);
    Result<void> scaleTransparent(const AVFrame& frame, PictureSize size, std::uint8_t* pixels);

    BlockAverage averaged;
    ScalerPtr fromFrame; ///< kept from the last frame, which was most likely of the same kind
    std::unique_ptr<ToneMapper> toneMapper;
    std::vector<std::uint16_t> hdrPixels;
    ScalerPtr fromTransparent; ///< premultiplied pixels to their size
};

} // namespace EngineBackend
