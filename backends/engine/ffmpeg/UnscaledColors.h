#pragma once

#include <cstdint>

struct AVFrame;

namespace EngineBackend {

struct ColorDescription;

/// Whether `convertUnscaled` knows the frame's kind: three planes of 8 bits, chroma halved in both
/// directions, as most videos have.
bool canConvertUnscaled(const AVFrame& frame, const ColorDescription& colors);

/// Makes a picture of the frame's own size, many times faster than the scaler does. Chroma is interpolated
/// linearly from where the frame says that its samples lie. `pixels` are rows without gaps of B, G, R, A.
void convertUnscaled(const AVFrame& frame, const ColorDescription& colors, std::uint8_t* pixels);

} // namespace EngineBackend
