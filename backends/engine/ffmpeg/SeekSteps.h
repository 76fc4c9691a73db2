#pragma once

#include <cstdint>
#include <optional>

namespace EngineBackend {

class Demuxer;

/// Goes to where decoding for a time may start: first where the container thinks best, then further and
/// further back, at last to the first packet.
class SeekSteps {
public:
    SeekSteps(Demuxer& source, int streamIndex, std::int64_t target);

    /// Moves the demuxer. False when there is nothing further back.
    bool goBack();
    /// Says where the last step led: decode time of the first packet that came, if one did.
    void cameTo(std::optional<std::int64_t> ticks);
    bool isAtStart() const { return atStart; }

private:
    bool goToStart();

    Demuxer* demuxer;
    int stream;
    std::int64_t next;
    std::int64_t step;
    std::int64_t firstTicks;
    int steps = 0;
    bool atStart = false;
};

} // namespace EngineBackend
