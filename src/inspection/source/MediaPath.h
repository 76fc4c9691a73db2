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
