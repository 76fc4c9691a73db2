#include "engine/ffmpeg/VideoDecoder.h"

#include "engine/ffmpeg/PixelBudget.h"

#include <fmt/format.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <new>

namespace EngineBackend {

VideoDecoder::VideoDecoder(CodecContextPtr opened)
    : context(std::move(opened)) {}

VideoDecoder::~VideoDecoder() = default;

Result<std::unique_ptr<VideoDecoder>> VideoDecoder::open(const AVStream& stream, int threads) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (!codec)
        return failure(ErrorKind::Unsupported,
                       fmt::format("no decoder for {}", avcodec_get_name(stream.codecpar->codec_id)));
    CodecContextPtr context(avcodec_alloc_context3(codec));
    if (!context)
        throw std::bad_alloc();
    if (avcodec_parameters_to_context(context.get(), stream.codecpar) < 0)
        return failure(ErrorKind::Unsupported,
                       fmt::format("{}: its parameters are not understood", codec->name));
    context->pkt_timebase = stream.time_base;
    context->max_pixels = pixelBudget();
    context->thread_count = threads;
    if (avcodec_open2(context.get(), codec, nullptr) < 0)
        return failure(ErrorKind::Unsupported,
                       fmt::format("{}: the decoder refuses the stream", codec->name));
    return std::unique_ptr<VideoDecoder>(new VideoDecoder(std::move(context)));
}

void VideoDecoder::send(const AVPacket& packet, Discard discard) {
    // The packet is taken up by this very call, since no frame was waiting.
    context->skip_frame = discard == Discard::NonReference ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
    (void)avcodec_send_packet(context.get(), &packet);
}

void VideoDecoder::sendEnd() {
    (void)avcodec_send_packet(context.get(), nullptr);
}

DecodeStatus VideoDecoder::receive(AVFrame& frame) {
    const int status = avcodec_receive_frame(context.get(), &frame);
    if (status >= 0)
        return DecodeStatus::Frame;
    if (status == AVERROR_EOF)
        return DecodeStatus::End;
    return status == AVERROR(EAGAIN) ? DecodeStatus::NeedsInput : DecodeStatus::Skipped;
}

void VideoDecoder::flush() {
    avcodec_flush_buffers(context.get());
}

} // namespace EngineBackend
