#pragma once

#include "Report.h"
#include "pack/PackRequest.h"

#include <optional>
#include <string>
#include <vector>

namespace KestoHost {

/// What became of one input.
struct PackedPart {
    PackPart part;
    std::string member;   ///< of a `.plumex` file; empty for a track
    bool isCopied = true; ///< the input was taken byte for byte
};

/// What a recording came to.
struct PackReport {
    std::string output;
    std::string container; ///< "mosk" or "plumex"
    std::vector<PackedPart> parts;
    double milliseconds = 0;
    std::string warning; ///< empty for none
    std::optional<Failure> failure;
};

/// The one object of `--json`. The keys "reason" and "message" are there after a failure alone, and "parts"
/// is then empty.
std::string jsonText(const PackReport& report);

} // namespace KestoHost
