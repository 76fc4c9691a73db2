#pragma once

#include "engine/ffmpeg/Handles.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>

namespace EngineBackend {

class Demuxer;

/// Which frame of a stream is shown at a time, by its packets alone.
struct FramePlan {
    std::int64_t start = 0;
    std::int64_t end = 0; ///< equals `start` when it is not known
    bool isLast = false;
};

struct QueuedPacket {
    PacketPtr packet;
    std::int64_t start = 0;
    std::int64_t end = 0; ///< by its own duration
    bool isKey = false;
    bool isShown = true; ///< not cut away by an edit list, and whole
};

/// Packets of the selected stream that were read and not yet decoded, in the order of decoding.
class PacketWindow {
public:
    explicit PacketWindow(Demuxer& source)
        : demuxer(&source) {}

    /// Forgets all; the demuxer was moved. `isFirstPacket`: to the first packet.
    void restart(bool isFirstPacket);

    /// Reads until no packet that follows can be shown at or before `target` or bound the interval that
    /// covers it. False when the packets' time stamps cannot tell; the window is then of no use.
    ///
    /// What lies before the last key frame that is shown at or before `target` is dropped when that is more
    /// than `mostBeforeKey` packets.
    bool readFor(std::int64_t target, std::size_t mostBeforeKey);
    /// One more packet into the window. False at the end, or as `readFor`.
    bool readOne();

    /// Of the packets in the window, what is shown at `target`; nothing when all are shown later.
    std::optional<FramePlan> planFor(std::int64_t target) const;
    /// The start of the packet in the window that is shown next after `target`; nothing without any.
    std::optional<std::int64_t> nextStart(std::int64_t target) const;
    /// The start of the packet in the window that is shown first; nothing without any.
    std::optional<std::int64_t> earliestStart() const;
    /// The place of the last key frame that is shown at or before `target`.
    std::optional<std::size_t> keyFor(std::int64_t target) const;

    bool isEmpty() const { return packets.empty(); }
    const QueuedPacket& front() const { return packets.front(); }
    QueuedPacket takeFront();
    void dropFront(std::size_t count);
    /// How many packets have been dropped by now.
    std::size_t droppedCount() const { return dropped; }

    /// Whether it begins with the stream's first packet.
    bool beginsAtStart() const { return atStart; }
    bool isAtEnd() const { return atEnd; }
    bool isTrusted() const { return trusted; }
    /// Decode time of the last packet read, or what comes nearest; nothing before the first.
    std::optional<std::int64_t> lastTicks() const { return lastRead; }
    /// The same of the first packet since the restart.
    std::optional<std::int64_t> firstTicks() const { return firstRead; }

private:
    bool isSettledFor(std::int64_t target) const;
    void append(PacketPtr packet);

    Demuxer* demuxer;
    std::deque<QueuedPacket> packets;
    std::size_t dropped = 0;
    bool atStart = false;
    bool atEnd = false;
    bool trusted = true;
    std::optional<std::int64_t> lastRead;
    std::optional<std::int64_t> firstRead;
    std::optional<std::int64_t> lastDecodeTicks;
};

} // namespace EngineBackend
