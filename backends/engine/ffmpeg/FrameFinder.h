#pragma once

#include "engine/ffmpeg/FoundFrame.h"
#include "engine/ffmpeg/OrderedSearch.h"
#include "engine/ffmpeg/PlannedSearch.h"

#include <cstdint>
#include <optional>

namespace EngineBackend {

class Demuxer;
class VideoDecoder;

/// Finds the frame that is shown at a time, by plan where the stream's time stamps allow it and by decoding
/// everything where not.
class FrameFinder {
public:
    FrameFinder(Demuxer& source, VideoDecoder& frames, int streamIndex);

    /// `ticks` from the start of the presentation, as are those of the result. Nothing when no frame comes
    /// out.
    std::optional<FoundFrame> find(std::int64_t ticks);

private:
    std::optional<FoundFrame> findInFile(std::int64_t target);
    std::optional<FoundFrame> findAttached();
    void findOrigin();

    Demuxer* demuxer;
    VideoDecoder* decoder;
    int stream;
    PlannedSearch planned;
    OrderedSearch ordered;
    bool mayPlan;
    std::optional<std::int64_t> origin;
};

} // namespace EngineBackend
