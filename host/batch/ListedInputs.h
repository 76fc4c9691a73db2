#pragma once

#include "batch/InputSource.h"

#include <span>

namespace KestoHost {

/// The inputs that the command line names, which must outlive this.
class ListedInputs final : public InputSource {
public:
    explicit ListedInputs(std::span<const std::string> inputs)
        : rest(inputs)
        , count(inputs.size()) {}

    std::optional<std::string> next() override {
        if (rest.empty())
            return std::nullopt;
        std::string input = rest.front();
        rest = rest.subspan(1);
        return input;
    }
    std::optional<std::size_t> total() const override { return count; }

private:
    std::span<const std::string> rest;
    std::size_t count;
};

} // namespace KestoHost
