#include "engine/ffmpeg/FrameFinder.h"

#include "engine/ffmpeg/Demuxer.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace EngineBackend {

FrameFinder::FrameFinder(Demuxer& source, VideoDecoder& frames, int streamIndex)
    : demuxer(&source)
    , decoder(&frames)
    , stream(streamIndex)
    , planned(source, frames, streamIndex)
    , ordered(source, frames, streamIndex)
    , mayPlan(source.timeStamps() != TimeStamps::DecodeOnly) {}

std::optional<FoundFrame> FrameFinder::find(std::int64_t ticks) {
    if (demuxer->streams()[static_cast<std::size_t>(stream)].video.isAttachedPicture)
        return findAttached();
    if (!origin)
        findOrigin();
    auto found = findInFile(ticks + *origin);
    if (found) {
        found->start -= *origin;
        found->end -= *origin;
    }
    return found;
}

void FrameFinder::findOrigin() {
    origin = demuxer->originOf(stream);
    // Numbers in the order of decoding begin before the first frame is shown, by what the decoder holds back.
    if (!mayPlan)
        if (const auto first = ordered.findFirst())
            origin = first->start;
}

std::optional<FoundFrame> FrameFinder::findInFile(std::int64_t target) {
    if (mayPlan) {
        if (auto found = planned.find(target)) {
            ordered.leave();
            return found;
        }
        planned.leave();
        ordered.leave();
        mayPlan = planned.isPossible();
    }
    return ordered.find(target);
}

std::optional<FoundFrame> FrameFinder::findAttached() {
    FramePtr frame = makeFrame();
    decoder->flush();
    decoder->send(demuxer->stream(stream).attached_pic, Discard::Nothing);
    DecodeStatus status = decoder->receive(*frame);
    if (status == DecodeStatus::NeedsInput) {
        decoder->sendEnd();
        status = decoder->receive(*frame);
    }
    if (status != DecodeStatus::Frame)
        return std::nullopt;
    return FoundFrame{std::move(frame), 0, 0, /*isLast=*/true};
}

} // namespace EngineBackend
