#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// The pair of `kind` and `sourceCode` of each track of a `.mosk` file, in its order; read once for each time
/// that the file was written. None for a file that is no recording. False when there is no such file, and
/// `tracks` then stays as it is. `path` is UTF-8, looked up as `System.h` tells. Any thread; one that asks
/// while a file is read waits.
bool ReadMoskTrackList(const std::string& path, std::vector<std::pair<std::int32_t, std::int32_t>>& tracks);
