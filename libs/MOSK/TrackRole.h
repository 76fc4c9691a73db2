#pragma once

#include "engine/StreamFacts.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace MOSK {

/// What a track recorded, by the number that a reader tells of it.
enum class TrackRole : std::int32_t {
    None = 0,
    Screen = 100,
    Camera = 101,
    Microphone = 102,
    SystemAudio = 103,
};

/// The sample format of data that goes with a recording.
constexpr std::string_view recordingDataFormat = "qrl2";

/// The handler name that marks a track of the role; empty for none.
std::string_view handlerNameOf(TrackRole role);

/// The four characters of the sample entry; empty when the track has none.
std::string formatOf(const EngineBackend::StreamFacts& track);

/// By the handler name, as docs/recording-formats.md tells; none where the track can't hold what it says.
TrackRole roleOf(const EngineBackend::StreamFacts& track);

} // namespace MOSK
