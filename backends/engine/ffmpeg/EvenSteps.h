#pragma once

#include <cstdint>
#include <optional>

namespace EngineBackend {

/// Guesses the next of some times by those before it: tiles of a sheet lie evenly on the time line.
class EvenSteps {
public:
    /// Somebody asked for that time, in ticks.
    void add(std::int64_t ticks);
    /// A guess was wrong, which costs more than right ones spare; from now on there is none.
    void giveUp() { isOver = true; }

    /// The time that will be asked for next; nothing while there is no rule to be seen.
    std::optional<std::int64_t> next() const;
    /// Whether what is shown from `start` until before `end` may be what is shown at `next`. True without a
    /// guess, and where `end` is not known.
    bool mayMeet(std::int64_t start, std::int64_t end) const;

private:
    bool isOver = false;
    bool isEven = false;
    std::optional<std::int64_t> last;
    std::int64_t step = 0;
};

} // namespace EngineBackend
