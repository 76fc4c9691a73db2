#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KestoThumbnailer {

/// A track as the headers of its file tell.
struct ListedTrack {
    std::int32_t kind = 2; ///< 0 video, 1 audio, 2 other
    std::int32_t recordedFrom =
        0;                   ///< 100 screen, 101 camera, 102 microphone, 103 the system's sound; 0 unknown
    std::string format;      ///< of the samples, in four characters
    std::uint32_t width = 0; ///< at which it is shown, in pixels; 0 for what is no picture
    std::uint32_t height = 0;
    double seconds = -1; ///< its duration; below 0 when the file does not tell
};

/// The tracks of an MP4, MOV or `.mosk` file in their order, without decoding: of a damaged one those before
/// the damage, none of any other file. Any thread.
KESTO_EXPORT std::vector<ListedTrack> ListTracks(const std::wstring& path);

} // namespace KestoThumbnailer
