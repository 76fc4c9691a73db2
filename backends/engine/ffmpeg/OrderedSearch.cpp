#include "engine/ffmpeg/OrderedSearch.h"

#include "engine/ffmpeg/Demuxer.h"
#include "engine/ffmpeg/SeekSteps.h"

extern "C" {
#include <libavcodec/packet.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
}

#include <algorithm>

namespace EngineBackend {

namespace {

constexpr std::int64_t nearbySeconds = 3;

std::int64_t ticksOfOneFrame(const AVStream& stream) {
    const AVRational rate = stream.avg_frame_rate;
    if (rate.num <= 0 || rate.den <= 0)
        return 1;
    return std::max<std::int64_t>(av_rescale_q(1, {rate.den, rate.num}, stream.time_base), 1);
}

} // namespace

OrderedSearch::OrderedSearch(Demuxer& source, VideoDecoder& frames, int streamIndex)
    : demuxer(&source)
    , decoder(&frames)
    , stream(streamIndex)
    , isSparse(source.timeStamps() == TimeStamps::Sparse)
    , frameTicks(ticksOfOneFrame(source.stream(streamIndex))) {}

std::optional<FoundFrame> OrderedSearch::find(std::int64_t target) {
    if (canGoForward(target))
        return walkTo(target);
    return seekFor(target);
}

std::optional<FoundFrame> OrderedSearch::findFirst() {
    if (!demuxer->rewind())
        return std::nullopt;
    restart(/*isFirstPacket=*/true);
    if (!next)
        next = nextFrame();
    isPlaced = next.has_value();
    return next;
}

bool OrderedSearch::canGoForward(std::int64_t target) const {
    if (!isPlaced || target < (current ? current->start : next->start))
        return false;
    if (next && target < next->start)
        return true;
    if (!lastRead || !demuxer->canSeek())
        return true;
    if (const auto key = demuxer->indexedKeyFrame(stream, target))
        return *key <= *lastRead;
    const std::int64_t nearby = av_rescale_q(nearbySeconds, {1, 1}, demuxer->stream(stream).time_base);
    return target - *lastRead <= nearby;
}

std::optional<FoundFrame> OrderedSearch::seekFor(std::int64_t target) {
    SeekSteps steps(*demuxer, stream, target);
    while (!demuxer->deadline().isPassed() && steps.goBack()) {
        restart(steps.isAtStart());
        if (auto found = walkTo(target))
            return found;
        steps.cameTo(firstRead);
    }
    return std::nullopt;
}

std::optional<FoundFrame> OrderedSearch::walkTo(std::int64_t target) {
    if (!next)
        next = nextFrame();
    while (next && next->start <= target) {
        current = std::move(next);
        next = nextFrame();
    }
    isPlaced = (current || (atStart && next)) && demuxer->readingStop() != ReadingStop::Interruption;
    if (!current)
        return atStart ? next : std::nullopt;
    if (next)
        current->end = next->start;
    current->isLast = !next && isEndSent && demuxer->readingStop() == ReadingStop::EndOfFile;
    return current;
}

void OrderedSearch::restart(bool isFirstPacket) {
    decoder->flush();
    isPlaced = false;
    atStart = isFirstPacket;
    awaitsKey = !isFirstPacket;
    isEndSent = false;
    lastStart.reset();
    firstRead.reset();
    lastRead.reset();
    current.reset();
    next.reset();
}

std::optional<FoundFrame> OrderedSearch::nextFrame() {
    FramePtr frame = makeFrame();
    while (!demuxer->deadline().isPassed()) {
        switch (decoder->receive(*frame)) {
        case DecodeStatus::Frame:
            if (canPlace(*frame))
                return timed(std::move(frame));
            break;
        case DecodeStatus::NeedsInput:
            feed();
            break;
        case DecodeStatus::Skipped:
            break;
        case DecodeStatus::End:
            return std::nullopt;
        }
    }
    return std::nullopt;
}

bool OrderedSearch::canPlace(const AVFrame& frame) {
    awaitsKey = awaitsKey && !isKeyFrame(frame);
    const bool isFirstAfterSeek = !lastStart && !atStart;
    return !awaitsKey && !(isFirstAfterSeek && toldStart(frame) == AV_NOPTS_VALUE);
}

/// Made-up stamps lead astray behind a seek, so they are kept from the decoder where there are some.
std::int64_t OrderedSearch::toldStart(const AVFrame& frame) const {
    return isSparse ? frame.pts : frame.best_effort_timestamp;
}

void OrderedSearch::feed() {
    const PacketPtr packet = isEndSent ? nullptr : demuxer->readPacket();
    if (!packet) {
        isEndSent = true;
        decoder->sendEnd();
        return;
    }
    const std::int64_t ticks = packet->dts != AV_NOPTS_VALUE ? packet->dts : packet->pts;
    if (ticks != AV_NOPTS_VALUE) {
        lastRead = ticks;
        firstRead = firstRead.value_or(ticks);
    }
    if (isSparse && packet->pos < 0)
        packet->pts = packet->dts = AV_NOPTS_VALUE;
    if ((packet->flags & AV_PKT_FLAG_CORRUPT) == 0)
        decoder->send(*packet, Discard::Nothing);
}

FoundFrame OrderedSearch::timed(FramePtr frame) {
    const std::int64_t guessed =
        lastStart ? *lastStart + lastDuration : firstRead.value_or(demuxer->originOf(stream));
    const std::int64_t told = toldStart(*frame);
    const bool isUsable = told != AV_NOPTS_VALUE && (!lastStart || told > *lastStart);
    const std::int64_t start = isUsable ? told : guessed;
    lastStart = start;
    lastDuration = frameTicks * (2 + frame->repeat_pict) / 2;
    return FoundFrame{std::move(frame), start, start + lastDuration};
}

} // namespace EngineBackend
