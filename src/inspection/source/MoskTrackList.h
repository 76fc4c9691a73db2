#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// The pair of `kind` and `sourceCode` of each track of a `.mosk` file, in its order; read once for each
/// state of the file. False when there is no such file. Any thread.
bool ReadMoskTrackList(const std::string& path, std::vector<std::pair<std::int32_t, std::int32_t>>& tracks);
