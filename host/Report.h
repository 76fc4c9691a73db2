#pragma once

#include <optional>
#include <string>

namespace KestoHost {

/// Why no picture was written.
struct Failure {
    std::string reason;          ///< a word that stays the same from version to version
    std::string message;         ///< a sentence for people, which names the file
    bool withoutPicture = false; ///< the input is at fault: no picture is to be had of it
};

/// Which frame of a video, project or animation was shown.
struct DeliveredFrame {
    double seconds = 0; ///< when it starts
    std::optional<long long>
        number; ///< from 0; none where the video's frames do not follow each other evenly
};

/// What one thumbnail came to.
struct ThumbReport {
    std::string input;
    std::string output;
    std::string sourceKind; ///< "image", "pdf", "animation", "video", "recording" or "project"
    double seconds = 0;     ///< the time that was asked for
    int width = 0;          ///< of the written picture, in pixels
    int height = 0;
    double milliseconds = 0;             ///< from the open of the input to the end of writing
    std::optional<DeliveredFrame> frame; ///< of a picture out of what moves
    std::optional<Failure> failure;
};

/// The one object of `--json`: every key is always there but "reason" and "message", which tell a failure,
/// and "frameTime" and "frame", which tell which frame is shown. Bytes of names that are not UTF-8 become
/// U+FFFD.
std::string jsonText(const ThumbReport& report);

/// The same object on one line.
std::string jsonLine(const ThumbReport& report);

} // namespace KestoHost
