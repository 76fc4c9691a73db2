#include "engine/ffmpeg/VideoDecoder.h"

#include "system/PixelBudget.h"

#include <fmt/format.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <new>

namespace EngineBackend {

namespace {

/// ITU-T H.265, 7.4.2.2: a picture that its own temporal layer does not refer to may serve the layers above,
/// yet the decoder passes over it. ISO/IEC 14496-15, 8.3.3.1.2, tells the number of layers.
bool mayPassOver(const AVCodecParameters& codec) {
    constexpr int layersPlace = 21;
    if (codec.codec_id != AV_CODEC_ID_HEVC)
        return true;
    return codec.extradata_size > layersPlace && codec.extradata[0] == 1 &&
           (codec.extradata[layersPlace] >> 3 & 7) == 1;
}

} // namespace

VideoDecoder::VideoDecoder(CodecContextPtr opened, const AVCodecParameters& codec)
    : context(std::move(opened))
    , mayDiscard(mayPassOver(codec))
    , nonReference(codec) {}

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
    context->max_pixels = SystemBackend::pixelBudget();
    context->thread_count = threads;
    if (avcodec_open2(context.get(), codec, nullptr) < 0)
        return failure(ErrorKind::Unsupported,
                       fmt::format("{}: the decoder refuses the stream", codec->name));
    return std::unique_ptr<VideoDecoder>(new VideoDecoder(std::move(context), *stream.codecpar));
}

void VideoDecoder::send(const AVPacket& packet, Discard discard) {
    const bool isPassedOver = mayDiscard && discard == Discard::NonReference;
    if (isPassedOver && nonReference.isOne({packet.data, static_cast<std::size_t>(packet.size)}))
        return;
    // The packet is taken up by this very call, since no frame was waiting.
    context->skip_frame = isPassedOver ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
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
