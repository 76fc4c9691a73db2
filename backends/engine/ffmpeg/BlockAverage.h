#pragma once

#include "engine/StreamFacts.h"
#include "engine/ffmpeg/Handles.h"

namespace EngineBackend {

/// Averages blocks of a frame that will be shown much smaller. The scaler then has a small part of the work
/// left, and enough pixels to be exact about edges. One thread at a time.
class BlockAverage {
public:
    /// A frame of whole blocks of `frame`, of its format, with at least twice the lengths of `wanted`; valid
    /// until the next call. `frame` itself where its planes can't be divided into such blocks, or without
    /// memory.
    const AVFrame& reduced(const AVFrame& frame, PictureSize wanted);

private:
    bool makeRoom(const AVFrame& frame, int factor);

    FramePtr smaller; ///< kept from the last frame, which was most likely of the same kind
};

} // namespace EngineBackend
