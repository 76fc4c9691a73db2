#include "engine/ffmpeg/Remuxer.h"

#include "engine/ffmpeg/OpenContainer.h"
#include "engine/ffmpeg/SampleFormats.h"

#include <fmt/format.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/intreadwrite.h>
}

#include <algorithm>
#include <array>
#include <new>
#include <string_view>
#include <utility>

namespace EngineBackend {

namespace {

constexpr std::int64_t mostDataBytes = std::int64_t{256} << 20;

const char* shortNameOf(RemuxContainer container) {
    switch (container) {
    case RemuxContainer::Movie:
        return "mp4";
    case RemuxContainer::Avi:
        return "avi";
    case RemuxContainer::Asf:
        return "asf";
    case RemuxContainer::Wav:
        return "wav";
    }
    return "mp4";
}

/// Of the codecs that a container holds, those that are most often met in it.
const char* usualCodecsOf(RemuxContainer container) {
    switch (container) {
    case RemuxContainer::Movie:
        return "h264 or mpeg4, aac or pcm_s16le";
    case RemuxContainer::Avi:
        return "h264, mpeg4 or mjpeg";
    case RemuxContainer::Asf:
        return "wmv2, mpeg4 or h264";
    case RemuxContainer::Wav:
        return "pcm_s16le or mp3";
    }
    return "";
}

/// The container's own mark for the codec, where it knows one, and else the mark that the codec had.
std::uint32_t tagFor(const AVOutputFormat& format, const AVCodecParameters& codec) {
    unsigned own = 0;
    if (!format.codec_tag || av_codec_get_id(format.codec_tag, codec.codec_tag) == codec.codec_id ||
        av_codec_get_tag2(format.codec_tag, codec.codec_id, &own) == 0)
        return codec.codec_tag;
    return 0;
}

bool holds(const AVOutputFormat& format, AVCodecID codec) {
    return avformat_query_codec(&format, codec, FF_COMPLIANCE_NORMAL) == 1;
}

AVRational asAv(Rational value) {
    AVRational reduced = {0, 1};
    av_reduce(&reduced.num, &reduced.den, value.numerator(), value.denominator(), INT32_MAX);
    return reduced;
}

/// AVI counts frames, and times follow from the count.
AVRational timeBaseFor(const RemuxInput& input, RemuxContainer container) {
    const VideoFacts& video = input.facts().video;
    const Rational rate = video.realFrameRate > 0 ? video.realFrameRate : video.averageFrameRate;
    if (container == RemuxContainer::Avi && input.facts().kind == StreamKind::Video && rate > 0)
        return asAv(1 / rate);
    return input.stream().time_base;
}

/// What lies beside the codec's parameters, such as how a picture is turned.
void copySideData(const AVStream& from, AVStream& to) {
#if LIBAVCODEC_VERSION_INT < AV_VERSION_INT(60, 31, 100) // since then it is one of the parameters
    for (int i = 0; i < from.nb_side_data; ++i) {
        const AVPacketSideData& side = from.side_data[i];
        std::uint8_t* copy = av_stream_new_side_data(&to, side.type, side.size);
        if (!copy)
            throw std::bad_alloc();
        std::copy_n(side.data, side.size, copy);
    }
#else
    (void)from;
    (void)to;
#endif
}

Result<PacketPtr> readWhole(IByteSource& source, const std::string& name) {
    const std::int64_t size = source.size();
    if (size <= 0 || size > mostDataBytes)
        return failure(
            size > 0 ? ErrorKind::TooLarge : ErrorKind::Damaged,
            fmt::format("{}: 1 to {} bytes of data are expected, found {}", name, mostDataBytes, size));
    PacketPtr packet = makePacket();
    if (av_new_packet(packet.get(), static_cast<int>(size)) < 0)
        return failure(ErrorKind::TooLarge, fmt::format("{}: not enough memory for it", name));
    const std::span into(packet->data, static_cast<std::size_t>(size));
    if (source.read(std::as_writable_bytes(into)) != size)
        return failure(ErrorKind::Unreadable, fmt::format("{}: it can't be read to its end", name));
    return packet;
}

} // namespace

Result<RemuxOutcome> Remuxer::run(RemuxJob job, IByteTarget& target) {
    Remuxer remuxer(job.container, target);
    Result<void> done = remuxer.openInputs(std::move(job.tracks));
    for (const auto step : {&Remuxer::openOutput, &Remuxer::writeData})
        if (done)
            done = (remuxer.*step)(job.data);
    if (done)
        done = remuxer.writePackets();
    if (done)
        done = remuxer.finish(job.data);
    if (!done)
        return tl::unexpected(done.error());
    return RemuxOutcome{.isQuickTime = std::string_view(remuxer.output->oformat->name) == "mov"};
}

FrameOrder Remuxer::frameOrder() const {
    switch (container) {
    case RemuxContainer::Movie:
        return FrameOrder::IsTold;
    case RemuxContainer::Avi:
    case RemuxContainer::Wav:
        return FrameOrder::IsLeftToDecoders;
    case RemuxContainer::Asf: // libavformat writes decode times where ASF wants those of presentation
        return FrameOrder::IsThatOfPackets;
    }
    return FrameOrder::IsTold;
}

Result<void> Remuxer::openInputs(std::vector<RemuxTrack> tracks) {
    for (RemuxTrack& track : tracks) {
        auto input = RemuxInput::open(std::move(track));
        if (!input)
            return tl::unexpected(input.error());
        inputs.push_back(std::move(*input));
        if (auto read = inputs.back()->advance(frameOrder()); !read)
            return read;
    }
    return {};
}

const AVOutputFormat* Remuxer::chooseFormat() const {
    const AVOutputFormat* format = av_guess_format(shortNameOf(container), nullptr, nullptr);
    if (container != RemuxContainer::Movie || !format)
        return format;
    const bool holdsAll = std::all_of(inputs.begin(), inputs.end(), [format](const auto& input) {
        return holds(*format, input->stream().codecpar->codec_id);
    });
    return holdsAll ? format : av_guess_format("mov", nullptr, nullptr);
}

Result<void> Remuxer::openOutput(const std::vector<RemuxData>& data) {
    const AVOutputFormat* format = chooseFormat();
    AVFormatContext* opened = nullptr;
    if (!format)
        return failure(ErrorKind::Unavailable,
                       fmt::format("the installed FFmpeg does not write {}", shortNameOf(container)));
    if (avformat_alloc_output_context2(&opened, format, nullptr, nullptr) < 0)
        throw std::bad_alloc();
    output.reset(opened);
    io = makeTargetIo(place);
    output->pb = io.get();
    output->flags |= AVFMT_FLAG_BITEXACT | AVFMT_FLAG_CUSTOM_IO;
    return addTracks(data);
}

Result<void> Remuxer::addTracks(const std::vector<RemuxData>& data) {
    for (const auto& input : inputs)
        if (auto added = addTrack(*input); !added)
            return added;
    for (const RemuxData& each : data)
        addDataTrack(each);
    const std::string name = inputs.empty() ? std::string() : inputs.front()->name();
    const int status = avformat_write_header(output.get(), nullptr);
    return status < 0 ? Result<void>(explain(name, "the container can't be begun", status)) : Result<void>();
}

Result<void> Remuxer::addTrack(const RemuxInput& input) {
    const AVStream& from = input.stream();
    const AVOutputFormat& format = *output->oformat;
    if (container != RemuxContainer::Movie && !holds(format, from.codecpar->codec_id))
        return failure(ErrorKind::Unsupported,
                       fmt::format("{}: {} has no place for {}; it has for {}", input.name(), format.name,
                                   input.facts().codec, usualCodecsOf(container)));
    AVStream* to = avformat_new_stream(output.get(), nullptr);
    if (!to || avcodec_parameters_copy(to->codecpar, from.codecpar) < 0)
        throw std::bad_alloc();
    to->codecpar->codec_tag = tagFor(format, *from.codecpar);
    to->time_base = timeBaseFor(input, container);
    to->avg_frame_rate = from.avg_frame_rate;
    to->r_frame_rate = from.r_frame_rate;
    to->sample_aspect_ratio = asAv(input.facts().video.pixelAspect);
    to->codecpar->sample_aspect_ratio = to->sample_aspect_ratio;
    to->disposition = from.disposition & AV_DISPOSITION_DEFAULT;
    copySideData(from, *to);
    av_dict_set(&to->metadata, "handler_name", input.handlerName().c_str(), 0);
    return {};
}

void Remuxer::addDataTrack(const RemuxData& data) {
    constexpr AVRational milliseconds = {1, 1000};
    AVStream* to = avformat_new_stream(output.get(), nullptr);
    if (!to)
        throw std::bad_alloc();
    to->codecpar->codec_type = AVMEDIA_TYPE_DATA;
    to->codecpar->codec_id = AV_CODEC_ID_BIN_DATA;
    to->codecpar->codec_tag = AV_RL32(placeholderFormat);
    to->time_base = milliseconds;
    av_dict_set(&to->metadata, "handler_name", data.handlerName.c_str(), 0);
}

Result<void> Remuxer::writeData(const std::vector<RemuxData>& data) {
    Rational duration = 0;
    for (const auto& input : inputs)
        duration = std::max(duration, input->facts().duration.value_or(0));
    for (std::size_t i = 0; i < data.size(); ++i) {
        auto packet = readWhole(*data[i].source, data[i].name);
        if (!packet)
            return tl::unexpected(packet.error());
        const std::size_t track = inputs.size() + i;
        (*packet)->pts = 0;
        (*packet)->dts = 0;
        (*packet)->duration =
            boost::rational_cast<std::int64_t>(duration / Rational(output->streams[track]->time_base.num,
                                                                   output->streams[track]->time_base.den));
        (*packet)->flags |= AV_PKT_FLAG_KEY;
        if (auto written = write(std::move(*packet), track, data[i].name); !written)
            return written;
    }
    return {};
}

/// Behind the last when no input has a packet left.
std::size_t Remuxer::findEarliest() const {
    std::size_t earliest = inputs.size();
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const AVPacket* packet = inputs[i]->next();
        if (packet && (earliest == inputs.size() || av_compare_ts(packet->dts, inputs[i]->stream().time_base,
                                                                  inputs[earliest]->next()->dts,
                                                                  inputs[earliest]->stream().time_base) < 0))
            earliest = i;
    }
    return earliest;
}

Result<void> Remuxer::writePackets() {
    for (std::size_t i = findEarliest(); i < inputs.size(); i = findEarliest()) {
        RemuxInput& input = *inputs[i];
        PacketPtr packet = input.take();
        av_packet_rescale_ts(packet.get(), input.stream().time_base, output->streams[i]->time_base);
        if (auto written = write(std::move(packet), i, input.name()); !written)
            return written;
        if (auto read = input.advance(frameOrder()); !read)
            return read;
    }
    return {};
}

Result<void> Remuxer::write(PacketPtr packet, std::size_t track, const std::string& name) {
    packet->stream_index = static_cast<int>(track);
    const int status = av_write_frame(output.get(), packet.get());
    return status < 0 ? Result<void>(explain(name, "a packet can't be written", status)) : Result<void>();
}

Result<void> Remuxer::finish(const std::vector<RemuxData>& data) {
    const int status = av_write_trailer(output.get());
    avio_flush(io.get());
    if (status < 0 || io->error < 0)
        return explain("", "the container can't be finished", std::min(status, io->error));
    std::vector<std::string> formats;
    for (const RemuxData& each : data)
        formats.push_back(each.format);
    if (!formats.empty() && !nameSampleFormats(place.bytes, place.size, formats))
        return failure(ErrorKind::Unwritable, "the format of a track of data can't be written");
    return {};
}

tl::unexpected<Error> Remuxer::explain(const std::string& name, const std::string& what, int status) const {
    if (place.hasFailed)
        return failure(ErrorKind::Unwritable, "the output can't be written");
    return failure(ErrorKind::Unsupported,
                   fmt::format("{}: {} as {} ({})", name, what, output->oformat->name, textOfError(status)));
}

} // namespace EngineBackend
