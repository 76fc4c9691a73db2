#pragma once

#include "engine/EngineError.h"
#include "engine/ffmpeg/Handles.h"

#include <string>

namespace EngineBackend {

class Deadline;

struct ContainerChoice {
    const char* formats;           ///< libavformat's names, with commas
    bool ignoresEditLists = false; ///< of the MP4 family
};

/// Reads a container's header from `io`, which must outlive what is returned, as must `limit`. Containers
/// that lead to other files don't get at them. `name` stands for the source in messages.
Result<FormatContextPtr> openContainer(AVIOContext& io, Deadline& limit, const std::string& name,
                                       const ContainerChoice& choice);

/// What FFmpeg says of one of its negative results.
std::string textOfError(int error);

} // namespace EngineBackend
