#include "MOSK/WholeBoxes.h"

#include <array>
#include <cstdint>
#include <optional>

namespace MOSK {

namespace {

constexpr std::size_t headBytes = 8;      // a size of 32 bits, and the type
constexpr std::size_t longHeadBytes = 16; // size 1, the type, and a size of 64 bits
constexpr std::size_t shortSizeBytes = 4;
constexpr int mostBoxes = 1'000'000; // two for each fragment

std::uint64_t bigEndian(std::span<const std::byte> bytes) {
    std::uint64_t value = 0;
    for (const std::byte byte : bytes)
        value = value << 8U | std::to_integer<std::uint64_t>(byte);
    return value;
}

/// Nothing for a box that is cut off.
std::optional<std::uint64_t> boxSize(std::span<const std::byte> head, std::uint64_t left) {
    if (head.size() < headBytes)
        return std::nullopt;
    std::uint64_t size = bigEndian(head.first(shortSizeBytes));
    std::size_t least = headBytes;
    if (size == 0) // up to the end of the file
        size = left;
    if (size == 1) {
        if (head.size() < longHeadBytes)
            return std::nullopt;
        size = bigEndian(head.subspan(headBytes));
        least = longHeadBytes;
    }
    return size >= least && size <= left ? std::optional(size) : std::nullopt;
}

} // namespace

std::int64_t endOfWholeBoxes(EngineBackend::IByteSource& file) {
    const std::int64_t length = file.size();
    std::int64_t place = 0;
    for (int box = 0; box < mostBoxes && place < length && file.seek(place); ++box) {
        std::array<std::byte, longHeadBytes> head{};
        const std::int64_t got = file.read(head);
        const auto size =
            boxSize(std::span(head).first(static_cast<std::size_t>(std::max<std::int64_t>(got, 0))),
                    static_cast<std::uint64_t>(length - place));
        if (!size)
            break;
        place += static_cast<std::int64_t>(*size);
    }
    return place;
}

} // namespace MOSK
