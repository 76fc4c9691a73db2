#pragma once

#include <cstdint>
#include <string>

namespace KestoHost {

/// How many bytes of memory it takes to show an input, about and at most: all pixels of a picture, by its
/// header; a fixed figure for anything else. 0 for what can't be opened. The process must have started GDI+.
std::int64_t memoryNeedOf(const std::string& input);

} // namespace KestoHost
