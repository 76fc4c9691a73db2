#pragma once

#include "engine/EngineError.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace EngineBackend {

/// A track as its headers tell.
struct TrackFacts {
    std::uint32_t id = 0;
    std::uint32_t sampleFormat = 0; ///< four characters, the first in the lowest byte; 0 when there are none
    std::int64_t ticksPerSecond = 0;
    std::int64_t durationInTicks = 0; ///< 0 when it is not known
    std::int64_t sampleCount = 0;
};

/// A sample lasts from `start` until before `end`, in ticks from the track's first one, in the order of
/// decoding.
struct SampleFacts {
    std::int64_t place = 0; ///< of its bytes in the file
    std::int64_t bytes = 0;
    std::int64_t start = 0;
    std::int64_t end = 0;
    bool isSync = false;
};

/// What the tables of a file of the MP4 family say of its samples, with nothing decoded and edit lists left
/// aside. Tracks count from 0 in the order of the file, samples from 0; sound without compression has a
/// sample for a whole run of its own. What fragments hold is not known. One thread at a time.
class ISampleTables {
public:
    virtual ~ISampleTables() = default;

    virtual std::span<const TrackFacts> tracks() const = 0;
    /// Requires numbers within range.
    virtual SampleFacts sampleOf(std::size_t track, std::int64_t sample) const = 0;
    /// Fills `into` with the sample's bytes, all of which it takes. `Damaged` when the file has them not.
    /// Requires numbers within range.
    virtual Result<void> readSample(std::size_t track, std::int64_t sample, std::span<std::byte> into) = 0;
};

} // namespace EngineBackend
