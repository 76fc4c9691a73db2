#pragma once

#include "engine/EngineError.h"
#include "engine/Remux.h"
#include "engine/ffmpeg/Demuxer.h"
#include "engine/ffmpeg/Handles.h"

#include <memory>
#include <optional>
#include <string>

struct AVStream;

namespace EngineBackend {

/// What a container tells of the order in which frames are shown.
enum class FrameOrder {
    IsTold,
    IsLeftToDecoders, ///< frames are shown one after the other as they leave the decoder
    IsThatOfPackets,  ///< none but that
};

/// The packets of one stream, which begins at time 0.
class RemuxInput {
public:
    static Result<std::unique_ptr<RemuxInput>> open(RemuxTrack track);

    const std::string& name() const { return demuxer->name(); }
    const std::string& handlerName() const { return handler; }
    const StreamFacts& facts() const { return demuxer->streams()[static_cast<std::size_t>(index)]; }
    const AVStream& stream() const { return demuxer->stream(index); }

    /// Reads the next packet, which must tell what the new container wants; `next` is null behind the last.
    Result<void> advance(FrameOrder order);
    AVPacket* next() const { return packet.get(); }
    PacketPtr take() { return std::move(packet); }

private:
    RemuxInput(std::unique_ptr<Demuxer> source, int streamIndex, std::string handlerName);

    Result<void> completeStamps(FrameOrder order);
    std::int64_t estimateDecodeTime() const;
    tl::unexpected<Error> refuse(ErrorKind kind, const std::string& why) const;

    std::unique_ptr<Demuxer> demuxer;
    int index;
    std::string handler;
    PacketPtr packet;
    std::int64_t number = 0; ///< of the packet, from 0 on
};

} // namespace EngineBackend
