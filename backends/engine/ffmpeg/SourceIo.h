#pragma once

#include "engine/ByteSource.h"
#include "engine/ffmpeg/Handles.h"

namespace EngineBackend {

class Deadline;

/// What libavformat reads from. Reading ends with the deadline, so that no search of libavformat can go on
/// behind it.
struct LimitedSource {
    IByteSource& bytes;
    const Deadline& deadline;
};

/// `source` must outlive the context. std::bad_alloc without memory.
IoContextPtr makeSourceIo(LimitedSource& source);

} // namespace EngineBackend
