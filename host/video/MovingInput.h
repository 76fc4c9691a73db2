#pragma once

#include "ThumbnailRequest.h"

#include <optional>
#include <string>

namespace KestoHost {

enum class InputKind {
    Still, ///< a picture or a document, or nothing that could be read
    Video,
    Recording, ///< of screen and camera
    Project,
    Animation, ///< a GIF with several frames, where it is not to be taken for a still picture
};

/// Whether the name is that of a project file.
bool isProjectFile(const std::string& input);

/// Of a project by its name, else by content: a file that is no picture of a known format may be a video, or
/// a recording if its name says so.
/// `input` is a name that `refusalOf` has nothing against; the process must have started GDI+.
InputKind inputKindOf(const std::string& input);

/// Whether the request has a time, and its input is a GIF with several frames.
bool asksForMoment(const ThumbnailRequest& request);

/// The same; but an animation where the request asks for a moment of one.
InputKind inputKindOf(const ThumbnailRequest& request);

/// The word for reports: "image", "pdf", "animation", "video", "recording" or "project".
const char* wordOf(InputKind kind, const std::string& input);

/// Against a recording with its streams in it, of which a decoder may find the first one by chance.
std::optional<Failure> refusalOfCompoundFile(const std::string& input);

/// Why no video could be decoded of that stream of a file; -1 is the one that a player would show.
Failure whyNoVideo(const std::string& input, int stream);

} // namespace KestoHost
