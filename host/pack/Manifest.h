#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace KestoHost {

struct ManifestStream {
    std::string role;
    std::string name;
    std::uint64_t bytes = 0;
};

/// The text of "manifest.plumxml", as docs/recording-formats.md tells.
std::string manifestText(const std::vector<ManifestStream>& streams);

} // namespace KestoHost
