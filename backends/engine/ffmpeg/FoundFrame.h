#pragma once

#include "engine/ffmpeg/Handles.h"

#include <cstdint>
#include <memory>

namespace EngineBackend {

using SharedFrame = std::shared_ptr<const AVFrame>;

/// A decoded frame and the ticks from which and until before which it is shown; `end` equals `start` when it
/// is not known.
struct FoundFrame {
    SharedFrame frame;
    std::int64_t start = 0;
    std::int64_t end = 0;
    bool isLast = false; ///< it is what is shown from its end on, too
};

/// Also where decoding may start without being an instantaneous refresh.
bool isKeyFrame(const AVFrame& frame);

} // namespace EngineBackend
