#pragma once

#include <tl/expected.hpp>

#include <cstdint>

namespace GifBackend {

enum class Fault : std::uint8_t {
    Truncated, ///< the file ends too early
    Damaged,
};

struct Error {
    Fault fault = Fault::Damaged;
    const char* message = "";
};

template <typename T>
using Result = tl::expected<T, Error>;

} // namespace GifBackend
