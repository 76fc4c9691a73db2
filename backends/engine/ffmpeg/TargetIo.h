#pragma once

#include "engine/Remux.h"
#include "engine/ffmpeg/Handles.h"

#include <cstdint>

namespace EngineBackend {

/// What libavformat writes to, and where it stands.
struct TargetPlace {
    IByteTarget& bytes;
    std::int64_t place = 0;
    std::int64_t size = 0;
    bool hasFailed = false;
};

/// `target` must outlive the context. std::bad_alloc without memory.
IoContextPtr makeTargetIo(TargetPlace& target);

} // namespace EngineBackend
