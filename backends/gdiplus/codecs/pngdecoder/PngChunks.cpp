#include "gdiplus/codecs/pngdecoder/PngChunks.h"

#include <fmt/format.h>
#include <isa-l/crc.h>

#include <algorithm>
#include <cstring>

namespace GdiplusBackend {

namespace {

constexpr std::uint32_t longestChunk = 0x7FFFFFFF; // ISO/IEC 15948, 5.3
constexpr int mostChunksOfOtherKinds = 10'000;
constexpr std::string_view imageDataName = "IDAT";

tl::unexpected<LoadError> endsEarly() {
    return truncated("PNG: the file ends before the picture does");
}

std::uint32_t extendedChecksum(std::uint32_t checksum, std::span<const std::byte> bytes) {
    return crc32_gzip_refl(checksum, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

bool isLetter(std::byte character) {
    const auto value = std::to_integer<unsigned char>(character | std::byte{0x20});
    return value >= 'a' && value <= 'z';
}

} // namespace

Result<void> PngChunks::next() {
    reader.skip(std::uint64_t{contentLeft} + (checksumLeft ? 4 : 0));
    contentLeft = 0;
    checksumLeft = false;
    chunkStart = reader.position();
    std::array<std::byte, 8> head;
    if (!reader.read(head))
        return endsEarly();
    chunkLength = bigEndian32(std::span(head).first<4>());
    std::copy(head.begin() + 4, head.end(), type.begin());
    if (chunkLength > longestChunk || !std::all_of(type.begin(), type.end(), isLetter))
        return damaged(fmt::format("PNG: no chunk starts at byte {}", chunkStart));
    if (!is(imageDataName) && ++chunkCount > mostChunksOfOtherKinds)
        return damaged("PNG: more chunks than any file has");
    contentLeft = chunkLength;
    checksumLeft = true;
    checksum = extendedChecksum(0, type);
    return {};
}

bool PngChunks::is(std::string_view name) const {
    return name.size() == type.size() && std::memcmp(type.data(), name.data(), type.size()) == 0;
}

bool PngChunks::isCritical() const {
    return (type[0] & std::byte{0x20}) == std::byte{0};
}

Result<std::span<const std::byte>> PngChunks::take(std::size_t most) {
    const auto taken = reader.take(std::min<std::size_t>(most, contentLeft));
    if (taken.empty() && contentLeft > 0)
        return endsEarly();
    contentLeft -= static_cast<std::uint32_t>(taken.size());
    checksum = extendedChecksum(checksum, taken);
    return taken;
}

Result<std::vector<std::byte>> PngChunks::content(std::size_t most) {
    if (contentLeft > most)
        return damaged(fmt::format("PNG: a chunk of {} bytes where {} are the most", chunkLength, most));
    std::vector<std::byte> bytes;
    while (contentLeft > 0) {
        const auto taken = take(contentLeft);
        if (!taken)
            return tl::unexpected(taken.error());
        bytes.insert(bytes.end(), taken->begin(), taken->end());
    }
    if (Result<void> right = finish(); !right)
        return tl::unexpected(right.error());
    return bytes;
}

Result<void> PngChunks::finish() {
    while (contentLeft > 0)
        if (const auto taken = take(contentLeft); !taken)
            return tl::unexpected(taken.error());
    std::array<std::byte, 4> stored;
    if (!reader.read(stored))
        return endsEarly();
    checksumLeft = false;
    if (bigEndian32(stored) != checksum)
        return damaged(fmt::format("PNG: the chunk at byte {} has a wrong checksum", chunkStart));
    return {};
}

} // namespace GdiplusBackend
