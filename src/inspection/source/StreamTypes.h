#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct StreamTypeRecord {
    std::int32_t trackType = 2; ///< 0 video, 1 audio, 2 other
    std::string format;         ///< four characters
};

/// The tracks of an MP4 or MOV file, as far as it could be read: empty for any other file.
std::vector<StreamTypeRecord> FindStreamTypes(const std::wstring& path);
