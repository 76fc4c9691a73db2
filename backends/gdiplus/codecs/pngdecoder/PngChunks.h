#pragma once

#include "gdiplus/codecs/BufferedReader.h"

#include <array>
#include <string_view>

namespace GdiplusBackend {

inline std::uint32_t bigEndian32(std::span<const std::byte, 4> bytes) {
    return std::to_integer<std::uint32_t>(bytes[0]) << 24 | std::to_integer<std::uint32_t>(bytes[1]) << 16 |
           std::to_integer<std::uint32_t>(bytes[2]) << 8 | std::to_integer<std::uint32_t>(bytes[3]);
}

/// Walks over the chunks of a PNG file (ISO/IEC 15948, 5.3), from the length field of one of them on.
class PngChunks {
public:
    PngChunks(const ByteSource& source, std::uint64_t position)
        : reader(source, position) {}

    /// Goes to the next chunk, over what is left of the one before. `GenericError` for what can't be a chunk,
    /// and for more chunks than any file has.
    Result<void> next();

    bool is(std::string_view name) const;
    /// Whether the picture means nothing without it (5.4: the first letter is a capital).
    bool isCritical() const;
    std::uint64_t start() const { return chunkStart; } ///< of the length field
    std::uint32_t length() const { return chunkLength; }

    /// The next bytes of the content, from one to `most`; none at its end. They live until the next call.
    /// `Aborted` at the end of the file.
    Result<std::span<const std::byte>> take(std::size_t most);

    /// The whole content. `GenericError` for more than `most` bytes or a wrong checksum.
    Result<std::vector<std::byte>> content(std::size_t most);

    /// Reads over the rest of the content. `GenericError` for a wrong checksum.
    Result<void> finish();

private:
    BufferedReader reader;
    std::uint64_t chunkStart = 0;
    std::uint32_t chunkLength = 0;
    std::uint32_t contentLeft = 0;
    bool checksumLeft = false;
    std::uint32_t checksum = 0;
    std::array<std::byte, 4> type = {};
    int chunkCount = 0;
};

} // namespace GdiplusBackend
