#pragma once

#include "engine/ffmpeg/EvenSteps.h"
#include "engine/ffmpeg/FoundFrame.h"
#include "engine/ffmpeg/PacketWindow.h"
#include "engine/ffmpeg/VideoDecoder.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace EngineBackend {

class Demuxer;

/// Finds frames by planning: the packets' time stamps say which frame is shown at a time, before any is
/// decoded. So pictures that no other needs are passed over, and decoding ends with the frame itself.
///
/// The demuxer reads ahead of the decoder, and the decoder holds back what is shown later:
///   | in flight (sent, not shown yet) | window (read, not sent) | not read |
class PlannedSearch {
public:
    PlannedSearch(Demuxer& source, VideoDecoder& frames, int streamIndex);

    /// Nothing when the plan does not come true: stamps are missing or contradict each other, or the frame
    /// does not come out of the decoder.
    std::optional<FoundFrame> find(std::int64_t target);
    /// Somebody else has moved the demuxer or used the decoder.
    void leave() { isPlaced = false; }
    /// Whether packets tell when they are shown, as far as was seen.
    bool isPossible() const { return window.isTrusted(); }

private:
    struct Flight {
        std::int64_t start = 0;
        std::int64_t end = 0;
        bool isShown = false;
        bool mayBeMissing = false; ///< it was passed over, if no other picture needs it
    };

    bool canGoForward(std::int64_t target) const;
    bool goForward(std::int64_t target);
    bool expectsMore(bool goesOn) const;
    bool isPassedOver(std::int64_t target) const;
    bool seekFor(std::int64_t target);
    bool isPlaceGoodFor(std::int64_t target) const;
    void restartDecoder();
    std::optional<FramePlan> planFor(std::int64_t target) const;
    std::optional<FoundFrame> decode(const FramePlan& plan, bool keepsGoing);
    void feed(const FramePlan& plan, bool keepsGoing);
    bool isNeeded(const QueuedPacket& packet, const FramePlan& plan, bool keepsGoing) const;
    void sendFront(Discard discard);

    Demuxer* demuxer;
    VideoDecoder* decoder;
    int stream;
    PacketWindow window;
    std::vector<Flight> inFlight;
    bool isPlaced = false; ///< window and decoder belong together, and the last frame was `lastShown`
    bool isDrained = false;
    bool wasTargetSent = false;
    bool isSequence = false; ///< frames are asked for one after the other
    std::int64_t lastShown = 0;
    EvenSteps asked;
};

} // namespace EngineBackend
