#include "KestoMediaLib/projectfile/FileBytes.h"

#include "system/PathResolver.h"

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace KestoMediaLib::ProjectReading {

namespace {

constexpr std::uintmax_t largestFile = std::uintmax_t{16} << 20;

} // namespace

tl::expected<std::string, std::string> readFileBytes(const std::string& path) {
    const std::filesystem::path found = SystemBackend::resolvePath(path);
    std::error_code error;
    const auto status = std::filesystem::status(found, error);
    if (!std::filesystem::exists(status))
        return tl::unexpected(std::string("expected a project file, found no file"));
    if (!std::filesystem::is_regular_file(status))
        return tl::unexpected(std::string("expected a project file, found something that is no file"));
    const std::uintmax_t size = std::filesystem::file_size(found, error);
    if (error || size > largestFile)
        return tl::unexpected(fmt::format("expected a file of at most {} bytes", largestFile));
    std::ifstream file(found, std::ios::binary);
    std::string bytes(size, '\0');
    if (!file || !file.read(bytes.data(), static_cast<std::streamsize>(size)))
        return tl::unexpected(std::string("expected a file that can be read"));
    return bytes;
}

std::string folderOf(const std::string& path) {
    return std::filesystem::path(SystemBackend::resolvePath(path)).parent_path().string();
}

} // namespace KestoMediaLib::ProjectReading
