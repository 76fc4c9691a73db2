#include "engine/ffmpeg/PlannedSearch.h"

#include "engine/ffmpeg/Demuxer.h"
#include "engine/ffmpeg/SeekSteps.h"

extern "C" {
#include <libavcodec/packet.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
}

#include <algorithm>
#include <limits>

namespace EngineBackend {

namespace {

/// As many frames are decoded sooner than a decoder that was flushed gives its first.
constexpr std::size_t cheapDistance = 4;

constexpr std::size_t everyPacket = std::numeric_limits<std::size_t>::max();

/// Without an index: how far ahead reading on costs less than searching.
constexpr std::int64_t nearbySeconds = 3;

} // namespace

PlannedSearch::PlannedSearch(Demuxer& source, VideoDecoder& frames, int streamIndex)
    : demuxer(&source)
    , decoder(&frames)
    , stream(streamIndex)
    , window(source) {
    if (!source.canSeek())
        asked.giveUp(); // nobody could go back to what a wrong guess passed over
}

std::optional<FoundFrame> PlannedSearch::find(std::int64_t target) {
    asked.add(target);
    const bool goesOn = canGoForward(target);
    bool isReady = goesOn && !isDrained ? goForward(target) : seekFor(target);
    if (isReady && isPassedOver(target)) {
        asked.giveUp();
        isReady = seekFor(target);
    }
    isSequence = expectsMore(goesOn);
    isPlaced = false;
    if (!isReady)
        return std::nullopt;
    const std::optional<FramePlan> plan = planFor(target);
    if (!plan)
        return std::nullopt;
    std::optional<FoundFrame> found = decode(*plan, isSequence);
    isPlaced = found && demuxer->readingStop() != ReadingStop::Interruption;
    lastShown = plan->start;
    return found;
}

bool PlannedSearch::canGoForward(std::int64_t target) const {
    if (!isPlaced || target < lastShown || !window.lastTicks())
        return false;
    if (!demuxer->canSeek())
        return true;
    if (const auto key = demuxer->indexedKeyFrame(stream, target))
        return *key <= *window.lastTicks();
    const std::int64_t nearby = av_rescale_q(nearbySeconds, {1, 1}, demuxer->stream(stream).time_base);
    return target - *window.lastTicks() <= nearby;
}

bool PlannedSearch::goForward(std::int64_t target) {
    const std::size_t droppedBefore = window.droppedCount();
    if (!window.readFor(target, cheapDistance))
        return false;
    const auto key = window.keyFor(target);
    if (key && *key > cheapDistance)
        window.dropFront(*key);
    if (window.droppedCount() != droppedBefore)
        restartDecoder();
    return true;
}

bool PlannedSearch::seekFor(std::int64_t target) {
    SeekSteps steps(*demuxer, stream, target);
    while (steps.goBack()) {
        window.restart(steps.isAtStart());
        restartDecoder();
        if (!window.readFor(target, /*mostBeforeKey=*/0))
            return false;
        if (isPlaceGoodFor(target))
            return true;
        if (steps.isAtStart() && window.earliestStart())
            return window.readFor(*window.earliestStart(), everyPacket);
        steps.cameTo(window.firstTicks());
    }
    return false;
}

bool PlannedSearch::isPlaceGoodFor(std::int64_t target) const {
    const auto plan = window.planFor(target);
    return plan && (window.beginsAtStart() || (window.front().isKey && window.front().start <= plan->start));
}

void PlannedSearch::restartDecoder() {
    decoder->flush();
    inFlight.clear();
    isDrained = false;
}

/// Whether the decoder has to keep its state, since more is to come of this group of pictures. A frame that
/// follows in the same group as the last announces more of them; what is asked for alone is fetched with the
/// least work.
bool PlannedSearch::expectsMore(bool goesOn) const {
    if (!demuxer->canSeek())
        return true;
    const auto next = asked.next();
    const auto key = next ? demuxer->indexedKeyFrame(stream, *next) : std::nullopt;
    return key && window.lastTicks() ? *key <= *window.lastTicks() : goesOn;
}

/// Whether what is shown at `target` will not come out of the decoder, since another time was expected.
bool PlannedSearch::isPassedOver(std::int64_t target) const {
    const auto plan = planFor(target);
    return plan && std::any_of(inFlight.begin(), inFlight.end(), [&](const Flight& flight) {
               return flight.isShown && flight.mayBeMissing && flight.start == plan->start;
           });
}

std::optional<FramePlan> PlannedSearch::planFor(std::int64_t target) const {
    std::optional<FramePlan> plan = window.planFor(target);
    std::optional<std::int64_t> next = window.nextStart(target);
    for (const Flight& flight : inFlight) {
        if (!flight.isShown)
            continue;
        if (flight.start > target)
            next = std::min(next.value_or(flight.start), flight.start);
        else if (!plan || flight.start > plan->start)
            plan = {flight.start, flight.end};
    }
    if (plan)
        return FramePlan{.start = plan->start,
                         .end = next.value_or(plan->end),
                         .isLast =
                             !next && window.isAtEnd() && demuxer->readingStop() == ReadingStop::EndOfFile};
    // Before the start the first frame is shown.
    const auto earliest = window.beginsAtStart() ? window.earliestStart() : std::nullopt;
    return earliest ? window.planFor(*earliest) : std::nullopt;
}

std::optional<FoundFrame> PlannedSearch::decode(const FramePlan& plan, bool keepsGoing) {
    FramePtr frame = makeFrame();
    wasTargetSent = std::any_of(inFlight.begin(), inFlight.end(),
                                [&](const Flight& flight) { return flight.start == plan.start; });
    while (!demuxer->deadline().isPassed()) {
        switch (decoder->receive(*frame)) {
        case DecodeStatus::Frame:
            std::erase_if(inFlight, [&](const Flight& flight) { return flight.start <= frame->pts; });
            if (frame->pts == plan.start)
                return FoundFrame{std::move(frame), plan.start, plan.end, plan.isLast};
            if (frame->pts > plan.start)
                return std::nullopt;
            break;
        case DecodeStatus::NeedsInput:
            feed(plan, keepsGoing);
            break;
        case DecodeStatus::Skipped:
            break;
        case DecodeStatus::End:
            return std::nullopt;
        }
    }
    return std::nullopt;
}

void PlannedSearch::feed(const FramePlan& plan, bool keepsGoing) {
    const bool isDone = wasTargetSent && !keepsGoing;
    if (!isDone && window.isEmpty())
        (void)window.readOne();
    if (isDone || window.isEmpty()) {
        decoder->sendEnd();
        isDrained = true;
        return;
    }
    wasTargetSent = wasTargetSent || window.front().start == plan.start;
    sendFront(isNeeded(window.front(), plan, keepsGoing) ? Discard::Nothing : Discard::NonReference);
}

bool PlannedSearch::isNeeded(const QueuedPacket& packet, const FramePlan& plan, bool keepsGoing) const {
    return packet.start == plan.start ||
           (keepsGoing && packet.start > plan.start && asked.mayMeet(packet.start, packet.end));
}

void PlannedSearch::sendFront(Discard discard) {
    const QueuedPacket sent = window.takeFront();
    decoder->send(*sent.packet, discard);
    inFlight.push_back({sent.start, sent.end, sent.isShown, discard != Discard::Nothing});
}

} // namespace EngineBackend
