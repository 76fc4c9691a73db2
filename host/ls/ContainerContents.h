#pragma once

#include "Report.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace KestoHost {

/// A part of a container; what is empty or missing does not apply, or the file does not tell.
struct ContainerPart {
    std::string name = {}; ///< of a member
    std::string kind = {}; ///< "video", "audio", "data" or "folder"
    /// What was recorded: "screen", "camera", "microphone", "system", "events" or "manifest".
    std::string role = {};
    std::string format = {};                ///< of a track its samples', of a member its extension
    std::optional<std::uint64_t> size = {}; ///< of a member, in bytes
    int width = 0;                          ///< of a track, in pixels
    int height = 0;
    std::optional<double> seconds = {}; ///< of a track
};

enum class PartKind { Members, Tracks };

struct ContainerContents {
    std::string input = {};
    std::string container = {}; ///< "plumex", or as the library calls it, such as "mp4" or "matroska"
    PartKind partKind = PartKind::Tracks;
    std::vector<ContainerPart> parts = {}; ///< tracks in their order
    std::optional<Failure> failure = {};
};

/// Looks into a file without decoding it.
ContainerContents contentsOf(const std::string& input);

} // namespace KestoHost
