#pragma once

#include <cstdint>

namespace KestoHost {

/// Lets work begin as long as what is in work fits into a budget of memory. Work that is larger than the
/// budget is done alone. One thread at a time.
class Admission {
public:
    explicit Admission(std::int64_t bytes)
        : budget(bytes) {}

    bool admits(std::int64_t bytes) const { return inWork == 0 || bytes <= budget - held; }

    void begin(std::int64_t bytes) {
        ++inWork;
        held += bytes;
    }
    void end(std::int64_t bytes) {
        --inWork;
        held -= bytes;
    }

    int running() const { return inWork; }

private:
    std::int64_t budget;
    std::int64_t held = 0;
    int inWork = 0;
};

} // namespace KestoHost
