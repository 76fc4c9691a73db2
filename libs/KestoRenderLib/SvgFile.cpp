#include "KestoRenderLib/SvgFile.h"

#include "system/PathResolver.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace KestoRenderLib {

std::string svgFromFile(const std::string& path) {
    constexpr std::uintmax_t largestFile = std::uintmax_t{16} << 20;
    if (path.empty())
        return {};
    const std::filesystem::path found = SystemBackend::resolvePath(path);
    std::error_code error;
    // A pipe has no end.
    if (!std::filesystem::is_regular_file(found, error))
        return {};
    const std::uintmax_t size = std::filesystem::file_size(found, error);
    if (error || size > largestFile)
        return {};
    std::ifstream file(found, std::ios::binary);
    std::string bytes(size, '\0');
    return file.read(bytes.data(), static_cast<std::streamsize>(size)) ? bytes : std::string();
}

} // namespace KestoRenderLib
