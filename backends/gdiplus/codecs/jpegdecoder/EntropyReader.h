#pragma once

#include "gdiplus/codecs/BufferedReader.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

namespace GdiplusBackend {

/// Bits of entropy-coded bytes, the highest of each byte first. Knows no end: see `EntropyReader::reserve`.
class BitReader {
public:
    /// At least 56 bits are there to be seen.
    void refill() {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, next, sizeof bytes);
        if constexpr (std::endian::native == std::endian::little)
            bytes = __builtin_bswap64(bytes);
        // Bits below `count` are those that come next already, so they may be set twice.
        reservoir |= bytes >> count;
        next += (63 - count) / 8;
        count |= 56;
    }

    /// The next 1 to 63 bits.
    unsigned int see(unsigned int bits) const { return static_cast<unsigned int>(reservoir >> (64 - bits)); }

    void drop(unsigned int bits) {
        reservoir <<= bits;
        count -= bits;
    }

    /// The next 0 to 16 bits.
    int take(unsigned int bits) {
        const auto value = static_cast<int>(reservoir >> 1 >> (63 - bits));
        drop(bits);
        return value;
    }

private:
    friend class EntropyReader;

    const std::uint8_t* next = nullptr;
    std::uint64_t reservoir = 0;
    unsigned int count = 0;
};

/// Entropy-coded segments, the bytes between two markers (ITU-T T.81, B.1.1.5), without the zeros that are
/// stuffed behind each 0xFF.
class EntropyReader {
public:
    /// Segments are read from `bytes`, which stays where the last one ended, behind its marker.
    explicit EntropyReader(BufferedReader& bytes);

    /// The next bits are the first of a segment.
    BitReader beginSegment();

    /// Makes the bits of one MCU readable, however long it is. False when the segment ended before, or the
    /// file.
    bool reserve(BitReader& bits) { return bits.next <= limit || fill(bits); }

    /// Whether `bits` has come to the last byte of its segment, and no further.
    bool ended(BitReader& bits);

    /// The second byte of the marker that ended a segment.
    unsigned int marker() const { return endMarker; }

    /// Leads over the rest of a scan, restarts and all, to the marker behind it; 0 when the file ends first.
    static unsigned int skipScan(BufferedReader& bytes);

private:
    bool fill(BitReader& bits);
    bool unstuff();

    BufferedReader& input;
    std::vector<std::uint8_t> plain;
    std::size_t used = 0;
    const std::uint8_t* limit = nullptr;
    unsigned int endMarker = 0; ///< 0: the segment goes on
};

} // namespace GdiplusBackend
