#pragma once

#include <string>

namespace KestoRenderLib {

/// The bytes of a regular file of at most 16 MiB, by its path in UTF-8; empty when they can't be had.
std::string svgFromFile(const std::string& path);

} // namespace KestoRenderLib
