#include "engine/ffmpeg/Handles.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <new>

namespace EngineBackend {

void CodecContextDeleter::operator()(AVCodecContext* context) const {
    avcodec_free_context(&context);
}

void FormatContextDeleter::operator()(AVFormatContext* context) const {
    avformat_close_input(&context);
}

void OutputContextDeleter::operator()(AVFormatContext* context) const {
    avformat_free_context(context);
}

void FrameDeleter::operator()(AVFrame* frame) const {
    av_frame_free(&frame);
}

void IoContextDeleter::operator()(AVIOContext* context) const {
    av_freep(&context->buffer); // libavformat may have exchanged it for another
    avio_context_free(&context);
}

void PacketDeleter::operator()(AVPacket* packet) const {
    av_packet_free(&packet);
}

void ScalerDeleter::operator()(SwsContext* context) const {
    sws_freeContext(context);
}

FramePtr makeFrame() {
    FramePtr frame(av_frame_alloc());
    if (!frame)
        throw std::bad_alloc();
    return frame;
}

PacketPtr makePacket() {
    PacketPtr packet(av_packet_alloc());
    if (!packet)
        throw std::bad_alloc();
    return packet;
}

} // namespace EngineBackend
