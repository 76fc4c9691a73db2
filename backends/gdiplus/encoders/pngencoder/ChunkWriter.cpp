#include "gdiplus/encoders/pngencoder/ChunkWriter.h"

#include <libdeflate.h>

namespace GdiplusBackend {

bool ChunkWriter::signature() {
    constexpr std::array<unsigned char, 8> bytes = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    return out->write(std::as_bytes(std::span(bytes)));
}

bool ChunkWriter::chunk(std::string_view type, std::span<const std::byte> contents) {
    std::uint32_t checksum = libdeflate_crc32(0, type.data(), type.size());
    if (!contents.empty()) // a null pointer would start the checksum anew
        checksum = libdeflate_crc32(checksum, contents.data(), contents.size());
    ChunkContents length;
    length.put32(static_cast<std::uint32_t>(contents.size()));
    ChunkContents check;
    check.put32(checksum);
    return out->write(length.written()) && out->write(std::as_bytes(std::span(type))) &&
           out->write(contents) && out->write(check.written());
}

} // namespace GdiplusBackend
