#pragma once

#include "engine/Remux.h"

#include <cstdint>
#include <string>
#include <vector>

namespace EngineBackend {

/// What the tracks of data are called until their samples' own format is written over it: libavformat writes
/// tracks of such data under this name alone.
constexpr const char* placeholderFormat = "gpmd";

/// Gives the tracks of `placeholderFormat` in a finished movie of `size` bytes their formats, in their order.
/// False when the movie has another number of them or can't be written.
bool nameSampleFormats(IByteTarget& movie, std::int64_t size, const std::vector<std::string>& formats);

} // namespace EngineBackend
