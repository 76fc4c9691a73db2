#pragma once

#include "engine/ffmpeg/FoundFrame.h"
#include "engine/ffmpeg/VideoDecoder.h"

#include <cstdint>
#include <optional>

namespace EngineBackend {

class Demuxer;
class SeekSteps;

/// Finds frames by decoding all of them, in the order in which they are shown: for streams whose packets do
/// not tell when they are shown, and where packets are damaged.
class OrderedSearch {
public:
    OrderedSearch(Demuxer& source, VideoDecoder& frames, int streamIndex);

    /// Nothing when no frame comes out at all.
    std::optional<FoundFrame> find(std::int64_t target);
    /// Somebody else has moved the demuxer or used the decoder.
    void leave() { isPlaced = false; }
    /// The first frame of all; nothing when none comes out.
    std::optional<FoundFrame> findFirst();

private:
    bool canGoForward(std::int64_t target) const;
    std::optional<FoundFrame> seekFor(std::int64_t target);
    std::optional<FoundFrame> walkTo(std::int64_t target);
    void restart(bool isFirstPacket);
    std::optional<FoundFrame> nextFrame();
    bool canPlace(const AVFrame& frame);
    void feed();
    std::int64_t toldStart(const AVFrame& frame) const;
    FoundFrame timed(FramePtr frame);

    Demuxer* demuxer;
    VideoDecoder* decoder;
    int stream;
    bool isPlaced = false;
    bool atStart = false;
    bool awaitsKey = false; ///< frames before the first key frame may lack what they refer to
    bool isEndSent = false;
    bool isSparse;
    std::int64_t lastDuration = 0;
    std::int64_t frameTicks; ///< where frames do not tell when they are shown
    std::optional<std::int64_t> lastStart;
    std::optional<std::int64_t> firstRead;
    std::optional<std::int64_t> lastRead;
    std::optional<FoundFrame> current; ///< the last frame at or before the last target
    std::optional<FoundFrame> next;    ///< the one behind it
};

} // namespace EngineBackend
