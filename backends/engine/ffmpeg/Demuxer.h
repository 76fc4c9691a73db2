#pragma once

#include "engine/ByteSource.h"
#include "engine/EngineError.h"
#include "engine/StreamFacts.h"
#include "engine/ffmpeg/Handles.h"
#include "engine/ffmpeg/OpenContainer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct AVStream;

namespace EngineBackend {

/// What the container promises of the time stamps of its packets.
enum class TimeStamps {
    Presentation, ///< packets say when they are shown, as a rule
    Sparse,       ///< some packets do, and the stamps of others are made up behind them
    DecodeOnly,   ///< packets are numbered in the order in which they are decoded
};

enum class ReadingStop {
    None, ///< there was a packet
    EndOfFile,
    Damage,
    Interruption, ///< an error of the medium, or the deadline: it may go on another time
};

/// Takes a container apart into packets. Ticks are counts of a stream's time base, as the file has them.
class Demuxer {
public:
    /// Only containers are opened: what leads to further files (play lists) or is a single picture is none.
    static Result<std::unique_ptr<Demuxer>> open(std::unique_ptr<IByteSource> source,
                                                 const std::string& name);

    const std::string& name() const { return container->name(); }
    std::string format() const;
    TimeStamps timeStamps() const;
    std::optional<Rational> duration() const;
    std::span<const StreamFacts> streams() const { return facts; }
    const AVStream& stream(int index) const;
    /// Of time 0, which is the start of the presentation.
    std::int64_t originOf(int index) const { return origins[static_cast<std::size_t>(index)]; }
    Deadline& deadline() { return container->deadline(); }
    bool canSeek() const { return container->source().canSeek(); }

    /// From here on packets of other streams are passed over.
    void selectStream(int index);
    /// The next packet of the selected stream; null at the end, and where the file can't be read further.
    PacketPtr readPacket();
    /// Why the last call of `readPacket` gave none.
    ReadingStop readingStop() const { return stop; }

    /// Goes to a packet before or at `ticks` from which decoding may start, as far as the container knows.
    /// False when it can't; the place is then undefined.
    bool seekBefore(int index, std::int64_t ticks);
    /// Goes to the first packet. False when the source can't be read again.
    bool rewind();

    /// The decode time of the last key frame at or before `ticks` by the container's index; nothing without
    /// an index.
    std::optional<std::int64_t> indexedKeyFrame(int index, std::int64_t ticks) const;
    /// The index: decode times of all key frames known so far, in order.
    std::vector<std::int64_t> keyFrameTicks(int index) const;

private:
    explicit Demuxer(std::unique_ptr<OpenContainer> opened)
        : container(std::move(opened)) {}

    AVFormatContext& context() const { return container->context(); }
    AVStream& streamOf(int index) const;
    Result<void> completeFacts();
    bool seekToFirstPacket();
    void readFacts();

    std::unique_ptr<OpenContainer> container;
    std::vector<StreamFacts> facts;
    std::vector<std::int64_t> origins;
    int selected = -1;
    ReadingStop stop = ReadingStop::None;
    bool isFresh = true; ///< it stands before the first packet
};

} // namespace EngineBackend
