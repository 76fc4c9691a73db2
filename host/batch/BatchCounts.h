#pragma once

#include <cstddef>
#include <string>

namespace KestoHost {

/// What the inputs of a batch came to so far.
struct BatchCounts {
    std::size_t written = 0;
    std::size_t withoutPicture = 0; ///< the input is at fault
    std::size_t failed = 0;         ///< the name was refused, or the output could not be written

    std::size_t notWritten() const { return withoutPicture + failed; }
    std::size_t all() const { return written + notWritten(); }
};

/// The last object of `--json`, on one line: its one key is "summary".
std::string jsonLine(const BatchCounts& counts, double seconds, bool interrupted);

} // namespace KestoHost
