#pragma once

#include "engine/EngineError.h"
#include "engine/ffmpeg/Handles.h"
#include "engine/ffmpeg/NonReferencePackets.h"

#include <memory>

struct AVStream;

namespace EngineBackend {

/// Whether a picture that no other needs may be passed over; that changes no other picture.
enum class Discard { Nothing, NonReference };

/// What came of asking a decoder for a frame.
enum class DecodeStatus {
    Frame,      ///< there is one
    Skipped,    ///< a damaged packet gave none; ask again
    NeedsInput, ///< a packet, or the end of all packets, has to be sent
    End,        ///< nothing will come until the decoder is flushed
};

/// Turns the packets of one stream into frames, in the order in which they are shown.
class VideoDecoder {
public:
    /// For a picture of any size within the pixel budget. `threads` at least 1.
    static Result<std::unique_ptr<VideoDecoder>> open(const AVStream& stream, int threads);

    ~VideoDecoder();
    VideoDecoder(const VideoDecoder&) = delete;
    VideoDecoder& operator=(const VideoDecoder&) = delete;

    /// Only when `receive` said `NeedsInput`. A damaged packet is passed over. `discard` is for this packet.
    void send(const AVPacket& packet, Discard discard);
    /// Says that no packet follows, so that all frames come out.
    void sendEnd();
    /// The next frame into `frame`.
    DecodeStatus receive(AVFrame& frame);
    /// Forgets all packets; decoding starts over from a key frame.
    void flush();

private:
    VideoDecoder(CodecContextPtr opened, const AVCodecParameters& codec);

    CodecContextPtr context;
    bool mayDiscard;
    NonReferencePackets nonReference;
};

} // namespace EngineBackend
