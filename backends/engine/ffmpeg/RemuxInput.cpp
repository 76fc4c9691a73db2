#include "engine/ffmpeg/RemuxInput.h"

#include "engine/ffmpeg/MediaFile.h"

#include <fmt/format.h>

extern "C" {
#include <libavcodec/packet.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <utility>

namespace EngineBackend {

namespace {

/// -1 without one.
int chooseStream(const Demuxer& demuxer, StreamKind kind) {
    if (kind == StreamKind::Video)
        return bestVideoStreamOf(demuxer.streams());
    int chosen = -1;
    for (const StreamFacts& facts : demuxer.streams())
        if (facts.kind == kind && (chosen < 0 || facts.isDefault)) {
            chosen = facts.index;
            if (facts.isDefault)
                break;
        }
    return chosen;
}

const char* nameOf(StreamKind kind) {
    switch (kind) {
    case StreamKind::Video:
        return "video";
    case StreamKind::Audio:
        return "sound";
    case StreamKind::Subtitle:
        return "subtitles";
    case StreamKind::Other:
        return "data";
    }
    return "data";
}

} // namespace

RemuxInput::RemuxInput(std::unique_ptr<Demuxer> source, int streamIndex, std::string handlerName)
    : demuxer(std::move(source))
    , index(streamIndex)
    , handler(std::move(handlerName)) {
    demuxer->selectStream(index);
}

Result<std::unique_ptr<RemuxInput>> RemuxInput::open(RemuxTrack track) {
    auto demuxer = Demuxer::open(std::move(track.source), track.name);
    if (!demuxer)
        return tl::unexpected(demuxer.error());
    const int stream = chooseStream(**demuxer, track.kind);
    if (stream < 0)
        return failure(ErrorKind::NoSuchStream, fmt::format("{}: a stream of {} is expected, found none",
                                                            track.name, nameOf(track.kind)));
    if ((*demuxer)->streams()[static_cast<std::size_t>(stream)].timeBase <= 0)
        return failure(ErrorKind::Damaged, fmt::format("{}: a positive time base is expected", track.name));
    return std::unique_ptr<RemuxInput>(
        new RemuxInput(std::move(*demuxer), stream, std::move(track.handlerName)));
}

Result<void> RemuxInput::advance(FrameOrder order) {
    demuxer->deadline().begin();
    packet = demuxer->readPacket();
    if (!packet) {
        if (demuxer->deadline().isPassed())
            return refuse(ErrorKind::OutOfTime, "reading the next packet took too long");
        return demuxer->readingStop() == ReadingStop::EndOfFile
                   ? Result<void>()
                   : refuse(ErrorKind::Damaged, "it can't be read to its end");
    }
    if ((packet->flags & AV_PKT_FLAG_CORRUPT) != 0)
        return refuse(ErrorKind::Damaged, "a packet is damaged or cut off");
    const auto completed = completeStamps(order);
    ++number;
    return completed;
}

Result<void> RemuxInput::completeStamps(FrameOrder order) {
    const bool isReordered = stream().codecpar->video_delay > 0;
    if (packet->pts == AV_NOPTS_VALUE && order == FrameOrder::IsTold && isReordered)
        return refuse(ErrorKind::Unsupported,
                      fmt::format("its container does not tell when the frames of {} are shown, which are "
                                  "encoded out of order; an .mp4 or .mkv file does, and so does any video "
                                  "without B-frames",
                                  facts().codec));
    if (packet->pts == AV_NOPTS_VALUE && !isReordered)
        packet->pts = packet->dts;
    if (packet->pts != AV_NOPTS_VALUE)
        packet->pts -= demuxer->originOf(index);
    if (packet->dts != AV_NOPTS_VALUE)
        packet->dts -= demuxer->originOf(index);
    else
        packet->dts = isReordered ? estimateDecodeTime() : packet->pts;
    if (packet->dts == AV_NOPTS_VALUE)
        return refuse(ErrorKind::Unsupported, "its packets do not tell their times");
    if (order == FrameOrder::IsThatOfPackets && packet->pts != AV_NOPTS_VALUE && packet->pts != packet->dts)
        return refuse(ErrorKind::Unsupported,
                      fmt::format("the new container can't tell when the frames of {} are shown, which are "
                                  "encoded out of order; a video without B-frames is expected",
                                  facts().codec));
    packet->pos = -1;
    return {};
}

/// Some containers tell decode times only behind the frames that a decoder holds back at first.
std::int64_t RemuxInput::estimateDecodeTime() const {
    const Rational rate = facts().video.averageFrameRate;
    if (rate <= 0 || packet->pts == AV_NOPTS_VALUE)
        return AV_NOPTS_VALUE;
    const std::int64_t ticksOfFrame = boost::rational_cast<std::int64_t>(1 / rate / facts().timeBase);
    return std::min(packet->pts, (number - stream().codecpar->video_delay) * ticksOfFrame);
}

tl::unexpected<Error> RemuxInput::refuse(ErrorKind kind, const std::string& why) const {
    return failure(kind, fmt::format("{}: stream {}: {}", demuxer->name(), index, why));
}

} // namespace EngineBackend
