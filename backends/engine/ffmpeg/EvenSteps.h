#pragma once

#include <cstdint>
#include <optional>

namespace EngineBackend {

/// Guesses times that follow by those before them: tiles of a sheet lie evenly on the time line.
class EvenSteps {
public:
    /// Somebody asked for that time, in ticks.
    void add(std::int64_t ticks);
    /// A guess was wrong, which costs more than right ones spare; from now on there is none.
    void giveUp() { isOver = true; }

    /// The time that will be asked for next; nothing while there is no rule to be seen.
    std::optional<std::int64_t> next() const;
    /// Whether what is shown from `start`, behind the last time, until before `end` may be asked for. True
    /// without a guess, and where `end` is not known.
    bool mayMeet(std::int64_t start, std::int64_t end) const;

private:
    bool hasRule() const { return !isOver && count > 1; }
    std::int64_t timeAfter(std::int64_t steps) const;

    bool isOver = false;
    std::int64_t count = -1; ///< of even steps from `first` to `last`; -1 before the first time
    std::int64_t first = 0;
    std::int64_t last = 0;
};

} // namespace EngineBackend
