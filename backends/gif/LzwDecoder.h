#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace GifBackend {

/// Unpacks the codes of a frame (GIF89a, appendix F). A string of the code table is told by where it stands
/// in the output, so that it is never copied into a table.
class LzwDecoder {
public:
    /// How many bytes behind the wanted ones an output must have room for; they may be written to.
    static constexpr std::size_t roomBehind = 16;

    /// Writes `wanted` palette indices at most to `out`, and gives their number: fewer when the codes end,
    /// or are damaged, before. `smallestCodeSize` is from 1 to 8.
    std::size_t unpack(std::span<const std::uint8_t> codes, int smallestCodeSize, std::uint8_t* out,
                       std::size_t wanted);

private:
    struct String {
        std::uint32_t start = 0;
        std::uint32_t length = 0;
    };

    static constexpr unsigned longestCode = 12; // in bits
    std::array<String, 1U << longestCode> table;
};

} // namespace GifBackend
