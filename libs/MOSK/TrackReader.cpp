#include "MOSK/TrackReader.h"

#include "MOSK/TrackRole.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <utility>

namespace MOSK {

namespace {

using EngineBackend::Rational;
using EngineBackend::StreamKind;

/// The time of a tick is the tick's, though a double may lie a little before it. What lies beyond all ticks
/// is held at the ends, and what is no number is the start.
Rational exactTime(double seconds, Rational tick) {
    constexpr double precision = 1e-6; // of a tick
    constexpr std::int64_t partsOfTick = 2;
    const double mostTicks = 0x1p60 / static_cast<double>(tick.numerator()); // their parts fit 64 bits
    const double ticks = std::clamp(seconds / boost::rational_cast<double>(tick), -mostTicks, mostTicks);
    if (std::isnan(ticks))
        return 0;
    const double nearest = std::round(ticks);
    if (std::abs(ticks - nearest) < precision)
        return tick * static_cast<std::int64_t>(nearest);
    // Anywhere between two ticks is as good.
    return tick * (static_cast<std::int64_t>(std::floor(ticks)) * partsOfTick + 1) / partsOfTick;
}

} // namespace

TrackReader::TrackReader(std::shared_ptr<Recording> source, const EngineBackend::StreamFacts& track)
    : recording(std::move(source))
    , facts(track) {}

std::int32_t TrackReader::kind() const {
    switch (facts.kind) {
    case StreamKind::Video:
        return 0;
    case StreamKind::Audio:
        return 1;
    case StreamKind::Subtitle:
    case StreamKind::Other:
        return 2;
    }
    return 2;
}

std::string TrackReader::format() const {
    return formatOf(facts);
}

std::int32_t TrackReader::typeCode() const {
    return static_cast<std::int32_t>(roleOf(facts));
}

EngineBackend::PictureSize TrackReader::displaySize() const {
    return facts.kind == StreamKind::Video ? facts.video.displaySize : EngineBackend::PictureSize{};
}

bool TrackReader::decodeFrameAtTime(double seconds, unsigned char* buffer, unsigned int size,
                                    double* actualTime) {
    const std::uint64_t bytes = std::uint64_t{width()} * height() * 4;
    if (!buffer || bytes == 0 || size < bytes)
        return false;
    try {
        return decodeInto(seconds, buffer, bytes, actualTime);
    } catch (const std::exception&) { // no memory; a time that no fraction holds
        return false;
    }
}

bool TrackReader::decodeInto(double seconds, unsigned char* buffer, std::size_t bytes, double* actualTime) {
    EngineBackend::IVideoReader* source = reader();
    if (!source)
        return false;
    const auto found = source->pictureAt(exactTime(seconds, facts.timeBase), displaySize());
    if (!found)
        return false;
    std::memcpy(buffer, found->picture->pixels.get(), bytes);
    if (actualTime)
        *actualTime = boost::rational_cast<double>(found->timing.start);
    return true;
}

EngineBackend::IVideoReader* TrackReader::reader() {
    if (recording) {
        auto made = std::exchange(recording, nullptr)->readVideo(facts.index);
        if (made)
            frames = std::move(*made);
    }
    return frames.get();
}

} // namespace MOSK
