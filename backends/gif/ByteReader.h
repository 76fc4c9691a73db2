#pragma once

#include "gif/Bytes.h"

#include <optional>
#include <vector>

namespace GifBackend {

/// Reads bytes from a place on, in large pieces.
class ByteReader {
public:
    explicit ByteReader(IBytes& source, std::uint64_t place = 0);

    /// Where the next byte comes from.
    std::uint64_t place() const { return behindBuffer - unread.size(); }

    /// Empty at the end.
    std::optional<std::uint8_t> byte();
    /// Fills `out` as far as there are bytes, and gives their number.
    std::size_t read(std::span<std::uint8_t> out);
    /// May lead behind the end, where nothing can be read.
    void skip(std::uint64_t count);

private:
    void refill();

    IBytes& bytes;
    std::uint64_t behindBuffer;
    std::vector<std::uint8_t> buffer;
    std::span<const std::uint8_t> unread;
};

} // namespace GifBackend
