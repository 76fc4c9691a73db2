#pragma once

#include <tl/expected.hpp>

#include <string>

namespace KestoMediaLib::ProjectReading {

/// All of a file of at most 16 MiB, or why it cannot be had. What is no regular file is refused, as a pipe
/// has no end.
tl::expected<std::string, std::string> readFileBytes(const std::string& path);

/// The folder that the file of that path lies in, as the file system knows it.
std::string folderOf(const std::string& path);

} // namespace KestoMediaLib::ProjectReading
