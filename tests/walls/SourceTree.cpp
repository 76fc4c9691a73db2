#include "walls/SourceTree.h"

#include <fstream>
#include <iterator>
#include <sstream>

namespace Walls {

WallList readWalls(std::istream& lines) {
    WallList walls;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        std::vector<std::string>& names = walls[line.substr(0, colon)];
        std::istringstream words(line.substr(colon + 1));
        names.insert(names.end(), std::istream_iterator<std::string>(words), {});
    }
    return walls;
}

std::map<std::string, std::string> readSources(const std::filesystem::path& root) {
    std::map<std::string, std::string> files;
    for (const char* area : {"src", "libs", "backends", "host", "examples"}) {
        if (!std::filesystem::is_directory(root / area))
            continue;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / area)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".h" && extension != ".hpp" && extension != ".cpp" && extension != ".c")
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            files[entry.path().lexically_relative(root).generic_string()] = {
                std::istreambuf_iterator<char>(file), {}};
        }
    }
    return files;
}

} // namespace Walls
