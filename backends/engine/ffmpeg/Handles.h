#pragma once

#include <memory>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;
struct SwsContext;

namespace EngineBackend {

struct CodecContextDeleter {
    void operator()(AVCodecContext* context) const;
};
struct FormatContextDeleter {
    void operator()(AVFormatContext* context) const;
};
/// Of a container that is written.
struct OutputContextDeleter {
    void operator()(AVFormatContext* context) const;
};
struct FrameDeleter {
    void operator()(AVFrame* frame) const;
};
/// Frees the buffer with it, not what its callbacks point to.
struct IoContextDeleter {
    void operator()(AVIOContext* context) const;
};
struct PacketDeleter {
    void operator()(AVPacket* packet) const;
};
struct ScalerDeleter {
    void operator()(SwsContext* context) const;
};

using CodecContextPtr = std::unique_ptr<AVCodecContext, CodecContextDeleter>;
using FormatContextPtr = std::unique_ptr<AVFormatContext, FormatContextDeleter>;
using OutputContextPtr = std::unique_ptr<AVFormatContext, OutputContextDeleter>;
using FramePtr = std::unique_ptr<AVFrame, FrameDeleter>;
using IoContextPtr = std::unique_ptr<AVIOContext, IoContextDeleter>;
using PacketPtr = std::unique_ptr<AVPacket, PacketDeleter>;
using ScalerPtr = std::unique_ptr<SwsContext, ScalerDeleter>;

/// Empty ones; std::bad_alloc without memory.
FramePtr makeFrame();
PacketPtr makePacket();

} // namespace EngineBackend
