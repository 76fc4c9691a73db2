#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace KestoHost {

/// Where a batch gets its inputs from, one after the other. One thread.
class InputSource {
public:
    virtual ~InputSource() = default;

    /// Waits for the next input. None at the end, which an interruption and an error are, too.
    virtual std::optional<std::string> next() = 0;

    /// How many there are; none when only the end will tell.
    virtual std::optional<std::size_t> total() const = 0;

    /// Why there were no more, in words for people; empty when they were all.
    virtual std::string failure() const { return {}; }
};

} // namespace KestoHost
