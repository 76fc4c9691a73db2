#pragma once

#include "platform/WinTypes.h"

#include <string>

/// What a path names: a file, a member of a `.plumex` container, or a track of a `.mosk` file.
struct SourceRecord {
    std::wstring folder; ///< up to and with the last separator; empty when there is none
    std::int32_t kind = 0;
    std::wstring memberName;     ///< the whole file part, also with "!" and member
    std::wstring containerName;  ///< the file part without a member that was recognised
    std::uint32_t index = 0;     ///< of a track or stream inside the container
    std::int32_t sourceCode = 0; ///< of what was recorded; 0 when it is not known
};

/// No track is asked for.
constexpr std::uint32_t anyTrack = 0xFFFFFFFF;

/// Takes `path` apart; `index` is the track of a `.mosk` file, or `anyTrack`. All fields stay empty for
/// a track of a file that can't be read; else only the text counts. Any thread. Lets through what reading
/// a `.mosk` file throws.
SourceRecord ParseMediaPath(const std::wstring& path, std::uint32_t index);

/// What stands behind the last "." of the container's name, in its own case; empty without one.
std::wstring ExtensionOfMediaPath(const SourceRecord& record);

/// Whether the path names a track inside a recording.
bool IsMoskMemberPath(const std::wstring& path);
