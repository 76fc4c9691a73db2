#pragma once

#include <filesystem>
#include <istream>
#include <map>
#include <string>
#include <vector>

namespace Walls {

/// For each folder the names of the libraries that its build file lets it use.
using WallList = std::map<std::string, std::vector<std::string>>;

/// The sources that have walls, with their paths from the project's root.
struct SourceTree {
    std::map<std::string, std::string> files; ///< path and text
    WallList walls;
};

/// Lines "folder: name name"; a folder that comes twice may use the names of both lines.
WallList readWalls(std::istream& lines);

/// All C++ files below src, libs, backends, host and examples.
std::map<std::string, std::string> readSources(const std::filesystem::path& root);

} // namespace Walls
