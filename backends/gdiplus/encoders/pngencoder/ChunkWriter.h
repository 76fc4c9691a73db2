#pragma once

#include "gdiplus/encoders/SinkWriter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

namespace GdiplusBackend {

/// Contents of a small chunk (ISO/IEC 15948, 5.3): numbers are big-endian.
class ChunkContents {
public:
    void put8(std::uint32_t value) { bytes[count++] = static_cast<std::byte>(value); }
    void put32(std::uint32_t value) {
        for (const int shift : {24, 16, 8, 0})
            put8(value >> shift);
    }
    std::span<const std::byte> written() const { return std::span(bytes).first(count); }

private:
    std::array<std::byte, std::size_t{3} * 256> bytes; // the largest is a full palette
    std::size_t count = 0;
};

/// Writes the signature and chunks of a PNG file.
class ChunkWriter {
public:
    explicit ChunkWriter(SinkWriter& target)
        : out(&target) {}

    bool signature();
    /// Length, type, contents and checksum; `type` has four letters.
    bool chunk(std::string_view type, std::span<const std::byte> contents);

private:
    SinkWriter* out;
};

} // namespace GdiplusBackend
