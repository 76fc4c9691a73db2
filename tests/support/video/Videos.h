#pragma once

#include <filesystem>
#include <string>

/// The path of a video that `support/video/CMakeLists.txt` makes.
inline std::string videoPath(const std::string& name) {
    return (std::filesystem::path(KESTO_VIDEOS) / name).string();
}
