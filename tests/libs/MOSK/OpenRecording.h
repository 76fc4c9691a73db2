#pragma once

#include "platform/MOSK.h"

#include "support/FrameNumber.h"

#include <optional>
#include <string>
#include <vector>

/// What tests ask a recording.
namespace MOSK {

using Tracks = std::vector<boost::shared_ptr<MP4TrackReader>>;

inline boost::shared_ptr<Reader> openRecording(const std::string& path) {
    return Reader::create(path, AudioFormat::create16BitSignedInterleaved(44100, 2), nullptr);
}

/// Empty without a recording.
inline Tracks tracksOf(const std::string& path) {
    const auto reader = openRecording(path);
    return reader ? reader->tracks() : Tracks();
}

/// The number that the frame at `seconds` carries; nothing without a frame or a number that can be read.
inline std::optional<int> numberAt(MP4TrackReader& track, double seconds, double* actualTime = nullptr) {
    const int width = static_cast<int>(track.width());
    const int height = static_cast<int>(track.height());
    std::vector<unsigned char> pixels(std::size_t{track.width()} * track.height() * 4);
    if (!track.decodeFrameAtTime(seconds, pixels.data(), static_cast<unsigned int>(pixels.size()),
                                 actualTime))
        return std::nullopt;
    return FrameNumber::read(pixels.data(), width, height, width * 4);
}

} // namespace MOSK
