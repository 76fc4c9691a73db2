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

struct TrackListing {
    /// "mp4", also of a MOV file, "mosk", or the short name of another container, such as "matroska"; empty
    /// without tracks.
    std::string container;
    std::vector<ListedTrack> tracks; ///< in the order of the file
};

/// What a media file holds, without decoding. The headers of an MP4, MOV or `.mosk` file are walked, of a
/// damaged one up to the damage. Any other file is opened as for decoding, which takes longer and loads all
/// that decoding needs; so is one that does not begin with `ftyp`, or whose headers do not tell how long it
/// lasts. Without tracks for a file that can't be read. Any thread.
KESTO_EXPORT TrackListing ListTracks(const std::wstring& path);

} // namespace KestoThumbnailer
