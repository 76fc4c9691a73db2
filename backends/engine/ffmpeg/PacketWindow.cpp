#include "engine/ffmpeg/PacketWindow.h"

#include "engine/ffmpeg/Demuxer.h"

extern "C" {
#include <libavcodec/packet.h>
#include <libavutil/avutil.h>
}

#include <algorithm>

namespace EngineBackend {

namespace {

/// ITU-T H.264, A.3.1, and H.265, A.4.2: no picture is overtaken by more pictures than this.
constexpr int deepestReordering = 16;

} // namespace

void PacketWindow::restart(bool isFirstPacket) {
    packets.clear();
    atStart = isFirstPacket;
    atEnd = false;
    trusted = true;
    lastRead.reset();
    firstRead.reset();
    lastDecodeTicks.reset();
}

bool PacketWindow::readFor(std::int64_t target, std::size_t mostBeforeKey) {
    while (trusted && !isSettledFor(target)) {
        if (!readOne())
            break;
        const std::size_t before = packets.size() - 1;
        if (before > mostBeforeKey && packets.back().isKey && packets.back().start <= target) {
            dropFront(before);
            mostBeforeKey = 0;
        }
    }
    return trusted;
}

bool PacketWindow::isSettledFor(std::int64_t target) const {
    if (atEnd)
        return true;
    std::optional<std::int64_t> next;
    int later = 0;
    // What is shown later was read lately, since reading ends soon behind it.
    const std::size_t recent = std::min<std::size_t>(packets.size(), 4 * deepestReordering);
    for (auto queued = packets.rbegin(); queued != packets.rbegin() + static_cast<std::ptrdiff_t>(recent);
         ++queued) {
        if (queued->start <= target)
            continue;
        ++later;
        next = std::min(next.value_or(queued->start), queued->start);
    }
    if (later > deepestReordering)
        return true;
    return next && lastDecodeTicks && *lastDecodeTicks > target && *lastDecodeTicks >= *next;
}

bool PacketWindow::readOne() {
    if (atEnd)
        return false;
    PacketPtr packet = demuxer->readPacket();
    if (!packet) {
        atEnd = true;
        return false;
    }
    // A packet without a place of its own was cut out of a larger one, and its stamps are made up.
    const bool isStamped = demuxer->timeStamps() != TimeStamps::Sparse || packet->pos >= 0;
    const bool tellsStart = packet->pts != AV_NOPTS_VALUE && isStamped;
    const bool isPossible = packet->dts == AV_NOPTS_VALUE || packet->dts <= packet->pts;
    if (!tellsStart || !isPossible) {
        trusted = false;
        return false;
    }
    append(std::move(packet));
    return true;
}

void PacketWindow::append(PacketPtr packet) {
    const AVPacket& read = *packet;
    const std::int64_t ticks = read.dts != AV_NOPTS_VALUE ? read.dts : read.pts;
    lastRead = ticks;
    if (!firstRead)
        firstRead = ticks;
    if (read.dts != AV_NOPTS_VALUE)
        lastDecodeTicks = read.dts;
    packets.push_back({.packet = nullptr,
                       .start = read.pts,
                       .end = read.pts + std::max<std::int64_t>(read.duration, 0),
                       .isKey = (read.flags & AV_PKT_FLAG_KEY) != 0,
                       .isShown = (read.flags & (AV_PKT_FLAG_DISCARD | AV_PKT_FLAG_CORRUPT)) == 0});
    packets.back().packet = std::move(packet);
}

std::optional<FramePlan> PacketWindow::planFor(std::int64_t target) const {
    const QueuedPacket* best = nullptr;
    for (const QueuedPacket& queued : packets)
        if (queued.isShown && queued.start <= target && (!best || queued.start > best->start))
            best = &queued;
    if (!best)
        return std::nullopt;
    return FramePlan{.start = best->start, .end = nextStart(target).value_or(best->end)};
}

std::optional<std::int64_t> PacketWindow::nextStart(std::int64_t target) const {
    std::optional<std::int64_t> next;
    for (const QueuedPacket& queued : packets)
        if (queued.isShown && queued.start > target)
            next = std::min(next.value_or(queued.start), queued.start);
    return next;
}

std::optional<std::int64_t> PacketWindow::earliestStart() const {
    std::optional<std::int64_t> earliest;
    for (const QueuedPacket& queued : packets)
        if (queued.isShown)
            earliest = std::min(earliest.value_or(queued.start), queued.start);
    return earliest;
}

std::optional<std::size_t> PacketWindow::keyFor(std::int64_t target) const {
    for (std::size_t i = packets.size(); i-- > 0;)
        if (packets[i].isKey && packets[i].start <= target)
            return i;
    return std::nullopt;
}

QueuedPacket PacketWindow::takeFront() {
    QueuedPacket front = std::move(packets.front());
    packets.pop_front();
    atStart = false;
    return front;
}

void PacketWindow::dropFront(std::size_t count) {
    packets.erase(packets.begin(), packets.begin() + static_cast<std::ptrdiff_t>(count));
    atStart = atStart && count == 0;
    dropped += count;
}

} // namespace EngineBackend
