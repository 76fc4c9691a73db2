#include "gdiplus/codecs/webpdecoder/WebpChunks.h"

#include <webp/decode.h>

#include <array>
#include <cstring>
#include <string_view>

namespace GdiplusBackend {

namespace {

constexpr std::uint64_t chunkHeaderBytes = 8;
constexpr std::uint64_t riffHeaderBytes = 12;
constexpr auto endsEarly = "the WebP file is shorter than it says";

using Head = std::array<std::uint8_t, 64>; // enough for the size in either kind of bit stream

std::uint32_t littleEndian(std::span<const std::uint8_t> bytes) {
    std::uint32_t value = 0;
    for (std::size_t place = bytes.size(); place-- > 0;)
        value = value << 8U | bytes[place];
    return value;
}

class ChunkWalker {
public:
    explicit ChunkWalker(const ByteSource& bytes)
        : source(bytes) {}

    Result<WebpHeader> walk();

private:
    Result<void> takeChunk(std::string_view kind, std::uint64_t place, std::uint32_t length);
    Result<void> takeExtended(std::uint64_t place, std::uint32_t length);
    Result<void> takeStill(std::uint64_t chunk, WebpCoding coding);
    Result<void> takeFrame(std::uint64_t place, std::uint32_t length);
    Result<std::vector<std::byte>> payload(std::uint64_t place, std::uint32_t length) const;
    Head headAt(std::uint64_t place) const {
        Head head = {};
        source.read(place, std::as_writable_bytes(std::span(head)));
        return head;
    }

    const ByteSource& source;
    WebpHeader header;
    bool extended = false;
    bool hasPicture = false;
};

Result<WebpHeader> ChunkWalker::walk() {
    const Head riff = headAt(0);
    const std::uint64_t end = littleEndian(std::span(riff).subspan(4, 4)) + chunkHeaderBytes;
    if (end > source.size() || source.size() < riffHeaderBytes + chunkHeaderBytes)
        return truncated(endsEarly);
    header.pictureBytes = end;
    std::uint64_t place = riffHeaderBytes;
    while (place + chunkHeaderBytes <= end) {
        std::array<std::uint8_t, chunkHeaderBytes> chunk = {};
        if (source.read(place, std::as_writable_bytes(std::span(chunk))) != chunk.size())
            return truncated(endsEarly);
        const std::uint32_t length = littleEndian(std::span(chunk).subspan(4));
        place += chunkHeaderBytes;
        if (length > end - place)
            return damaged("a WebP chunk is larger than its file");
        const std::string_view kind(reinterpret_cast<const char*>(chunk.data()), 4);
        if (const auto taken = takeChunk(kind, place, length); !taken)
            return tl::unexpected(taken.error());
        place += length + (length & 1U);
    }
    if (!hasPicture)
        return damaged("a WebP file without a picture");
    return header;
}

Result<void> ChunkWalker::takeChunk(std::string_view kind, std::uint64_t place, std::uint32_t length) {
    if (kind == "VP8X")
        return takeExtended(place, length);
    if (kind == "ICCP" || kind == "EXIF") {
        auto bytes = payload(place, length);
        if (!bytes)
            return tl::unexpected(bytes.error());
        (kind == "ICCP" ? header.iccProfile : header.exif) = std::move(*bytes);
        return {};
    }
    if (hasPicture)
        return {};
    if (header.animated)
        return kind == "ANMF" ? takeFrame(place, length) : Result<void>{};
    if (kind == "VP8 ")
        return takeStill(place - chunkHeaderBytes, WebpCoding::Lossy);
    if (kind == "VP8L")
        return takeStill(place - chunkHeaderBytes, WebpCoding::Lossless);
    return {};
}

Result<void> ChunkWalker::takeExtended(std::uint64_t place, std::uint32_t length) {
    constexpr std::uint8_t animationFlag = 0x02;
    constexpr std::uint8_t alphaFlag = 0x10;
    if (length < 10)
        return damaged("WebP: the chunk with the canvas is too short");
    const Head head = headAt(place);
    extended = true;
    header.animated = (head[0] & animationFlag) != 0;
    header.hasAlpha = (head[0] & alphaFlag) != 0;
    header.width = static_cast<int>(littleEndian(std::span(head).subspan(4, 3))) + 1;
    header.height = static_cast<int>(littleEndian(std::span(head).subspan(7, 3))) + 1;
    return {};
}

Result<void> ChunkWalker::takeStill(std::uint64_t chunk, WebpCoding coding) {
    const Head head = headAt(chunk);
    WebPBitstreamFeatures features = {};
    if (WebPGetFeatures(head.data(), head.size(), &features) != VP8_STATUS_OK)
        return damaged("WebP: the picture's header is damaged");
    if (extended && (features.width != header.width || features.height != header.height))
        return damaged("WebP: the picture does not fill its canvas");
    header.width = features.width;
    header.height = features.height;
    header.hasAlpha = header.hasAlpha || features.has_alpha;
    header.coding = coding;
    hasPicture = true;
    return {};
}

Result<void> ChunkWalker::takeFrame(std::uint64_t place, std::uint32_t length) {
    constexpr std::uint32_t frameHeaderBytes = 16;
    if (length <= frameHeaderBytes)
        return damaged("WebP: a frame without pixels");
    const Head head = headAt(place);
    header.left = static_cast<int>(littleEndian(std::span(head).subspan(0, 3))) * 2;
    header.top = static_cast<int>(littleEndian(std::span(head).subspan(3, 3))) * 2;
    header.pictureStart = place + frameHeaderBytes;
    header.pictureBytes = length - frameHeaderBytes;
    hasPicture = true;
    return {};
}

Result<std::vector<std::byte>> ChunkWalker::payload(std::uint64_t place, std::uint32_t length) const {
    std::vector<std::byte> bytes(length);
    if (source.read(place, bytes) != bytes.size())
        return truncated(endsEarly);
    return bytes;
}

/// Some writers keep the identifier that stands before the block in JPEG files.
void dropIdentifier(std::vector<std::byte>& exif) {
    constexpr std::string_view identifier("Exif\0\0", 6);
    if (exif.size() >= identifier.size() &&
        std::memcmp(exif.data(), identifier.data(), identifier.size()) == 0)
        exif.erase(exif.begin(), exif.begin() + static_cast<std::ptrdiff_t>(identifier.size()));
}

} // namespace

Result<WebpHeader> readWebpHeader(const ByteSource& source) {
    auto header = ChunkWalker(source).walk();
    if (header)
        dropIdentifier(header->exif);
    return header;
}

} // namespace GdiplusBackend
