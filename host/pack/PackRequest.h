#pragma once

#include <string>
#include <vector>

namespace KestoHost {

/// A recording to be made. Names are as they were typed, empty for what it has not.
struct PackRequest {
    std::string screen;
    std::string camera;
    std::string audio;
    std::string systemAudio;
    std::string events;
    std::string output; ///< ends in ".mosk" or ".plumex"
};

/// What becomes a track or a member.
struct PackPart {
    std::string role; ///< "screen", "camera", "microphone", "system-audio" or "events"
    std::string input;
};

/// In the order of the recording.
std::vector<PackPart> partsOf(const PackRequest& request);

} // namespace KestoHost
