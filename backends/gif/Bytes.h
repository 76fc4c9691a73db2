#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace GifBackend {

/// Bytes that can be read at any place. One thread at a time.
class IBytes {
public:
    virtual ~IBytes() = default;

    /// Fills `out` from `place` as far as there are bytes, and gives their number: short only at the end or
    /// after an error of the medium.
    virtual std::size_t read(std::uint64_t place, std::span<std::byte> out) = 0;
};

} // namespace GifBackend
