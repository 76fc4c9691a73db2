#pragma once

#include <cstdint>
#include <string>

namespace KestoRenderLib {

/// What differs once a file has been written again, or another has taken its place.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t number = 0; ///< of the file on its device
    std::int64_t bytes = 0;
    std::int64_t changedSeconds = 0;
    std::int64_t changedNanoseconds = 0;

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// `path` is UTF-8 and looked up as `platform/System.h` tells. All is 0 where there is no file.
FileStamp stampOf(const std::string& path);

} // namespace KestoRenderLib
