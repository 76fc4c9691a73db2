#include "engine/ffmpeg/StreamFactsReader.h"

#include "engine/ffmpeg/H264Sps.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/display.h>
}

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

namespace EngineBackend {

namespace {

StreamKind kindOf(AVMediaType type) {
    if (type == AVMEDIA_TYPE_VIDEO)
        return StreamKind::Video;
    if (type == AVMEDIA_TYPE_AUDIO)
        return StreamKind::Audio;
    return type == AVMEDIA_TYPE_SUBTITLE ? StreamKind::Subtitle : StreamKind::Other;
}

Rational toRational(AVRational value, Rational otherwise) {
    return value.num > 0 && value.den > 0 ? Rational(value.num, value.den) : otherwise;
}

Rational toSeconds(std::int64_t ticks, AVRational timeBase) {
    // Ticks of a damaged file may be anything; what no product can hold is no time.
    constexpr std::int64_t mostProduct = std::int64_t{1} << 62;
    return timeBase.num > 0 && timeBase.den > 0 && ticks < mostProduct / timeBase.num &&
                   ticks > -mostProduct / timeBase.num
               ? Rational(ticks * timeBase.num, timeBase.den)
               : Rational(0);
}

struct DisplayMatrix {
    std::int32_t entries[9]; ///< ISO/IEC 14496-12, 8.3.2: a b u c d v x y w
};

const void* findDisplayMatrix(const AVStream& stream) {
#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(60, 31, 100)
    const AVPacketSideData* found = av_packet_side_data_get(
        stream.codecpar->coded_side_data, stream.codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    return found && found->size >= sizeof(DisplayMatrix) ? found->data : nullptr;
#else
    std::size_t bytes = 0;
    const std::uint8_t* found = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &bytes);
    return found && bytes >= sizeof(DisplayMatrix) ? found : nullptr;
#endif
}

/// The nearest of the eight upright ones. A point goes to x' = a x + c y, y' = b x + d y.
Orientation orientationOf(const AVStream& stream) {
    const void* found = findDisplayMatrix(stream);
    if (!found)
        return {};
    DisplayMatrix matrix = {};
    std::memcpy(&matrix, found, sizeof matrix);
    const std::int64_t a = matrix.entries[0];
    const std::int64_t b = matrix.entries[1];
    const std::int64_t c = matrix.entries[3];
    const std::int64_t d = matrix.entries[4];
    if (a == 0 && b == 0 && c == 0 && d == 0)
        return {};
    if (std::abs(a) + std::abs(d) >= std::abs(b) + std::abs(c))
        return {.quarterTurnsClockwise = d < 0 ? 2 : 0, .isMirrored = (a < 0) != (d < 0)};
    return {.quarterTurnsClockwise = c < 0 ? 1 : 3, .isMirrored = (b < 0) == (c < 0)};
}

std::optional<Rational> knownPixelAspect(const AVStream& stream) {
    const AVCodecParameters& codec = *stream.codecpar;
    for (const AVRational told : {stream.sample_aspect_ratio, codec.sample_aspect_ratio})
        if (told.num > 0 && told.den > 0)
            return Rational(told.num, told.den);
    if (codec.codec_id == AV_CODEC_ID_H264 && codec.extradata_size > 0)
        return sampleAspectOfAvcC({codec.extradata, static_cast<std::size_t>(codec.extradata_size)});
    return std::nullopt;
}

std::string textOf(const AVStream& stream, const char* key) {
    const AVDictionaryEntry* entry = av_dict_get(stream.metadata, key, nullptr, 0);
    return entry ? entry->value : "";
}

bool isAttachedPicture(const AVStream& stream) {
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

VideoFacts readVideoFacts(const AVStream& stream) {
    VideoFacts video;
    video.codedSize = {stream.codecpar->width, stream.codecpar->height};
    video.pixelAspect = knownPixelAspect(stream).value_or(1);
    video.orientation = orientationOf(stream);
    video.displaySize = displaySizeOf(video.codedSize, video.pixelAspect, video.orientation);
    video.realFrameRate = toRational(stream.r_frame_rate, 0);
    video.averageFrameRate = toRational(stream.avg_frame_rate, video.realFrameRate);
    video.isAttachedPicture = isAttachedPicture(stream);
    return video;
}

bool mayLackBitstreamHeader(AVCodecID codec) {
    return codec != AV_CODEC_ID_H264 && codec != AV_CODEC_ID_HEVC && codec != AV_CODEC_ID_MPEG4 &&
           codec != AV_CODEC_ID_AV1;
}

bool isStreamComplete(const AVStream& stream) {
    const AVCodecParameters& codec = *stream.codecpar;
    if (codec.codec_type == AVMEDIA_TYPE_AUDIO)
        return codec.codec_id != AV_CODEC_ID_NONE && codec.sample_rate > 0;
    if (codec.codec_type != AVMEDIA_TYPE_VIDEO || isAttachedPicture(stream))
        return true;
    // A fragmented file counts no frames in its header, and what its header does not list it does not time.
    return codec.codec_id != AV_CODEC_ID_NONE && codec.width > 0 && codec.height > 0 &&
           stream.nb_frames > 0 && stream.start_time != AV_NOPTS_VALUE && stream.avg_frame_rate.num > 0 &&
           (codec.extradata_size > 0 || mayLackBitstreamHeader(codec.codec_id)) && knownPixelAspect(stream);
}

bool countsForStart(const AVStream& stream) {
    const AVMediaType type = stream.codecpar->codec_type;
    return (type == AVMEDIA_TYPE_VIDEO || type == AVMEDIA_TYPE_AUDIO) &&
           stream.start_time != AV_NOPTS_VALUE && stream.time_base.num > 0 && stream.time_base.den > 0 &&
           !isAttachedPicture(stream);
}

bool isBefore(const AVStream& one, const AVStream& other) {
    return av_compare_ts(one.start_time, one.time_base, other.start_time, other.time_base) < 0;
}

} // namespace

PictureSize displaySizeOf(PictureSize coded, Rational pixelAspect, const Orientation& orientation) {
    // More than any real picture has is an error of the file.
    if (pixelAspect > 20 || pixelAspect < Rational(1, 20))
        pixelAspect = 1;
    const double aspect = boost::rational_cast<double>(pixelAspect);
    PictureSize shown = coded;
    if (aspect > 1)
        shown.width = static_cast<int>(std::min(std::lround(coded.width * aspect), 1L << 30));
    else if (aspect < 1)
        shown.height = static_cast<int>(std::min(std::lround(coded.height / aspect), 1L << 30));
    if (orientation.swapsAxes())
        std::swap(shown.width, shown.height);
    return shown;
}

StreamFacts readStreamFacts(const AVFormatContext& container, const AVStream& stream) {
    const AVCodecParameters& codec = *stream.codecpar;
    StreamFacts facts;
    facts.index = stream.index;
    facts.id = stream.id;
    facts.kind = kindOf(codec.codec_type);
    facts.codec = codec.codec_id == AV_CODEC_ID_NONE ? "" : avcodec_get_name(codec.codec_id);
    facts.codecTag = codec.codec_tag;
    facts.language = textOf(stream, "language");
    facts.handlerName = textOf(stream, "handler_name");
    facts.isDefault = (stream.disposition & AV_DISPOSITION_DEFAULT) != 0;
    facts.timeBase = toRational(stream.time_base, 0);
    if (stream.start_time != AV_NOPTS_VALUE)
        facts.startTime = toSeconds(stream.start_time, stream.time_base);
    if (stream.duration != AV_NOPTS_VALUE && stream.duration > 0)
        facts.duration = toSeconds(stream.duration, stream.time_base);
    else if (container.duration != AV_NOPTS_VALUE && container.duration > 0)
        facts.duration = toSeconds(container.duration, {1, AV_TIME_BASE});
    facts.frameCount = stream.nb_frames;
    facts.bitsPerSecond = codec.bit_rate;
    if (facts.kind == StreamKind::Video)
        facts.video = readVideoFacts(stream);
    if (facts.kind == StreamKind::Audio)
        facts.audio = {codec.sample_rate, codec.ch_layout.nb_channels};
    return facts;
}

bool isHeaderComplete(const AVFormatContext& container) {
    if (!std::string_view(container.iformat->name).starts_with("mov,") || container.nb_streams == 0)
        return false;
    const std::span streams(container.streams, container.nb_streams);
    const bool hasMovingPictures = std::any_of(streams.begin(), streams.end(), [](const AVStream* stream) {
        return stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isAttachedPicture(*stream);
    });
    // Of a cover the header tells no size, which matters where it is all that there is to show.
    return std::all_of(streams.begin(), streams.end(), [=](const AVStream* stream) {
        return isStreamComplete(*stream) && (hasMovingPictures || !isAttachedPicture(*stream));
    });
}

std::vector<std::int64_t> findOrigins(const AVFormatContext& container) {
    const AVStream* earliest = nullptr;
    const std::vector<AVStream*> streams(container.streams, container.streams + container.nb_streams);
    for (const AVStream* stream : streams)
        if (countsForStart(*stream) && (!earliest || isBefore(*stream, *earliest)))
            earliest = stream;
    std::vector<std::int64_t> origins;
    for (const AVStream* stream : streams) {
        const std::int64_t start = stream->start_time != AV_NOPTS_VALUE ? stream->start_time : 0;
        const std::int64_t shared =
            earliest ? av_rescale_q(earliest->start_time, earliest->time_base, stream->time_base) : start;
        const std::int64_t tenth = av_rescale_q(1, {1, 10}, stream->time_base);
        origins.push_back(start < shared || start - shared < tenth ? start : shared);
    }
    return origins;
}

} // namespace EngineBackend
