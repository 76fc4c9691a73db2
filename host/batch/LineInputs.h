#pragma once

#include "batch/InputSource.h"
#include "batch/Interruption.h"

namespace KestoHost {

/// Inputs as lines of standard input, read as they come. A line ends with a newline or with the input; a
/// carriage return before the newline belongs to the end, and empty lines are none. Of a line longer than any
/// path the beginning is kept, which names no file either.
class LineInputs final : public InputSource {
public:
    /// `interruption` ends the waiting for a line, and must outlive this.
    explicit LineInputs(const Interruption& interruption);

    std::optional<std::string> next() override;
    std::optional<std::size_t> total() const override { return std::nullopt; }
    std::string failure() const override { return error; }

private:
    std::optional<std::string> takeLine();
    bool waitForBytes() const;
    void readBytes();

    const Interruption& interruption;
    std::string bytes; ///< read, but not taken
    std::string line;  ///< the beginning of a line whose end is not read yet
    bool ended = false;
    std::string error;
};

} // namespace KestoHost
