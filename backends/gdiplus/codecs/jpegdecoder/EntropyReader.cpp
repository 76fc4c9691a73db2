#include "gdiplus/codecs/jpegdecoder/EntropyReader.h"

#include <algorithm>

namespace GdiplusBackend {

namespace {

constexpr std::size_t bufferBytes = std::size_t{32} * 1024;
/// An MCU has at most 10 blocks of 64 symbols, each at most 31 bits with what follows it.
constexpr std::size_t longestMcu = std::size_t{10} * 64 * 4;
constexpr std::ptrdiff_t reservoirBytes = 8;
constexpr std::size_t padding = longestMcu + 2 * reservoirBytes;

constexpr int atEnd = -1;

/// Takes the byte behind one or more 0xFF.
int takeBehindPrefix(BufferedReader& input) {
    for (;;) {
        const auto byte = input.take(1);
        if (byte.empty())
            return atEnd;
        if (byte[0] != std::byte{0xFF})
            return std::to_integer<int>(byte[0]);
    }
}

/// How many bytes come before the first 0xFF.
std::size_t plainBytes(std::span<const std::byte> bytes) {
    const void* prefix = std::memchr(bytes.data(), 0xFF, bytes.size());
    return prefix ? static_cast<std::size_t>(static_cast<const std::byte*>(prefix) - bytes.data())
                  : bytes.size();
}

constexpr bool isRestart(int marker) {
    return marker >= 0xD0 && marker <= 0xD7;
}

} // namespace

EntropyReader::EntropyReader(BufferedReader& bytes)
    : input(bytes)
    , plain(bufferBytes + padding) {}

BitReader EntropyReader::beginSegment() {
    // One byte, read already and behind the limit: the first `reserve` fills the buffer.
    BitReader bits;
    bits.next = plain.data() + 1;
    used = 1;
    limit = plain.data();
    endMarker = 0;
    return bits;
}

bool EntropyReader::fill(BitReader& bits) {
    const auto read = static_cast<std::size_t>(bits.next - plain.data());
    if (endMarker != 0 || read > used)
        return false;
    std::copy(plain.begin() + static_cast<std::ptrdiff_t>(read),
              plain.begin() + static_cast<std::ptrdiff_t>(used), plain.begin());
    used -= read;
    bits.next = plain.data();
    if (!unstuff())
        return false;
    if (endMarker == 0) {
        limit = plain.data() + used - longestMcu;
        return true;
    }
    std::fill_n(plain.begin() + static_cast<std::ptrdiff_t>(used), padding, std::uint8_t{0});
    limit = plain.data() + used + reservoirBytes;
    return true;
}

/// Fills the buffer, or as much of it as the segment has.
bool EntropyReader::unstuff() {
    while (used < bufferBytes) {
        const auto bytes = input.peek();
        if (bytes.empty())
            return false;
        const auto copied = bytes.first(std::min(bytes.size(), bufferBytes - used));
        const std::size_t count = plainBytes(copied);
        std::memcpy(plain.data() + used, copied.data(), count);
        used += count;
        if (count == copied.size()) {
            (void)input.take(count);
            continue;
        }
        (void)input.take(count + 1);
        const int behind = takeBehindPrefix(input);
        if (behind == atEnd)
            return false;
        if (behind != 0) {
            endMarker = static_cast<unsigned int>(behind);
            return true;
        }
        plain[used++] = 0xFF;
    }
    return true;
}

bool EntropyReader::ended(BitReader& bits) {
    // The marker may lie just behind what has been read so far.
    if (endMarker == 0 && !fill(bits))
        return false;
    const std::ptrdiff_t seen = bits.next - plain.data() - static_cast<std::ptrdiff_t>(bits.count / 8);
    return endMarker != 0 && seen == static_cast<std::ptrdiff_t>(used);
}

unsigned int EntropyReader::skipScan(BufferedReader& bytes) {
    for (;;) {
        const auto ahead = bytes.peek();
        if (ahead.empty())
            return 0;
        const std::size_t count = plainBytes(ahead);
        if (count == ahead.size()) {
            (void)bytes.take(count);
            continue;
        }
        (void)bytes.take(count + 1);
        const int behind = takeBehindPrefix(bytes);
        if (behind == atEnd)
            return 0;
        if (behind != 0 && !isRestart(behind))
            return static_cast<unsigned int>(behind);
    }
}

} // namespace GdiplusBackend
