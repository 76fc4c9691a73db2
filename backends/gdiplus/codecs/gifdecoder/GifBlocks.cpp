#include "gdiplus/codecs/gifdecoder/GifBlocks.h"

#include "gdiplus/codecs/BufferedReader.h"

#include <array>

namespace GdiplusBackend {

namespace {

// GIF89a, appendix A.
constexpr std::uint8_t imageSeparator = 0x2C;
constexpr std::uint8_t extensionIntroducer = 0x21;
constexpr std::uint8_t trailer = 0x3B;
constexpr std::uint8_t graphicControlLabel = 0xF9;

constexpr auto endsEarly = "the GIF file ends before its trailer";

template <std::size_t size>
using Block = std::array<std::uint8_t, size>;

int wordAt(std::span<const std::uint8_t> bytes, std::size_t place) {
    return bytes[place] | bytes[place + 1] << 8;
}

class GifWalker {
public:
    explicit GifWalker(const ByteSource& source, std::uint64_t position = 0)
        : reader(source, position) {}

    Result<GifHeader> readHeader();
    Result<void> walkToTrailer();

private:
    /// Empty at the end.
    std::optional<std::uint8_t> readByte();
    template <std::size_t size>
    Result<Block<size>> readBlock();
    Result<std::vector<Gdiplus::ARGB>> readPalette(std::uint8_t packedFields);
    Result<void> readExtension();
    Result<void> skipSubBlocks();
    Result<GifFrame> readFrame();
    Result<void> skipPixels();
    /// The position of the next frame's descriptor; empty at the trailer.
    Result<std::optional<std::uint64_t>> seekFrame();

    BufferedReader reader;
    std::vector<Gdiplus::ARGB> globalPalette;
    std::optional<int> transparentIndex;
};

std::optional<std::uint8_t> GifWalker::readByte() {
    const auto byte = reader.take(1);
    return byte.empty() ? std::nullopt : std::optional(std::to_integer<std::uint8_t>(byte[0]));
}

template <std::size_t size>
Result<Block<size>> GifWalker::readBlock() {
    Block<size> block = {};
    if (!reader.read(std::as_writable_bytes(std::span(block))))
        return truncated(endsEarly);
    return block;
}

Result<std::vector<Gdiplus::ARGB>> GifWalker::readPalette(std::uint8_t packedFields) {
    std::vector<Gdiplus::ARGB> palette;
    if (!(packedFields & 0x80U))
        return palette;
    const std::size_t count = std::size_t{2} << (packedFields & 7U);
    palette.reserve(256);
    for (std::size_t entry = 0; entry < count; ++entry) {
        const auto rgb = readBlock<3>();
        if (!rgb)
            return tl::unexpected(rgb.error());
        palette.push_back(0xFF000000U | static_cast<Gdiplus::ARGB>((*rgb)[0]) << 16 |
                          static_cast<Gdiplus::ARGB>((*rgb)[1]) << 8 | (*rgb)[2]);
    }
    return palette;
}

Result<void> GifWalker::skipSubBlocks() {
    for (;;) {
        const auto length = readByte();
        if (!length)
            return truncated(endsEarly);
        if (*length == 0)
            return {};
        reader.skip(*length);
    }
}

Result<void> GifWalker::readExtension() {
    const auto label = readByte();
    if (!label)
        return truncated(endsEarly);
    if (*label != graphicControlLabel)
        return skipSubBlocks();
    const auto length = readByte();
    if (!length)
        return truncated(endsEarly);
    if (*length < 4) {
        reader.skip(*length);
        return *length == 0 ? Result<void>{} : skipSubBlocks();
    }
    const auto control = readBlock<4>();
    if (!control)
        return tl::unexpected(control.error());
    transparentIndex = (*control)[0] & 1U ? std::optional<int>((*control)[3]) : std::nullopt;
    reader.skip(*length - 4U);
    return skipSubBlocks();
}

Result<std::optional<std::uint64_t>> GifWalker::seekFrame() {
    for (;;) {
        const auto introducer = readByte();
        if (!introducer)
            return truncated(endsEarly);
        switch (*introducer) {
        case imageSeparator:
            return reader.position() - 1;
        case trailer:
            return std::nullopt;
        case extensionIntroducer:
            if (const auto read = readExtension(); !read)
                return tl::unexpected(read.error());
            break;
        default:
            return damaged("a GIF block of unknown kind");
        }
    }
}

Result<GifFrame> GifWalker::readFrame() {
    const auto descriptor = readBlock<9>();
    if (!descriptor)
        return tl::unexpected(descriptor.error());
    const std::uint8_t packedFields = (*descriptor)[8];
    auto palette = readPalette(packedFields);
    if (!palette)
        return tl::unexpected(palette.error());
    return GifFrame{.left = wordAt(*descriptor, 0),
                    .top = wordAt(*descriptor, 2),
                    .width = wordAt(*descriptor, 4),
                    .height = wordAt(*descriptor, 6),
                    .interlaced = (packedFields & 0x40U) != 0,
                    .palette = palette->empty() ? globalPalette : std::move(*palette),
                    .transparentIndex = transparentIndex};
}

Result<void> GifWalker::skipPixels() {
    if (!readByte()) // the smallest code size
        return truncated(endsEarly);
    return skipSubBlocks();
}

Result<GifHeader> GifWalker::readHeader() {
    const auto screen = readBlock<13>();
    if (!screen)
        return tl::unexpected(screen.error());
    GifHeader header = {.screenWidth = wordAt(*screen, 6), .screenHeight = wordAt(*screen, 8)};
    auto palette = readPalette((*screen)[10]);
    if (!palette)
        return tl::unexpected(palette.error());
    globalPalette = std::move(*palette);

    const auto first = seekFrame();
    if (!first)
        return tl::unexpected(first.error());
    if (!*first)
        return damaged("a GIF file without a frame");
    auto frame = readFrame();
    if (!frame)
        return tl::unexpected(frame.error());
    header.firstFrame = std::move(*frame);
    if (const auto skipped = skipPixels(); !skipped)
        return tl::unexpected(skipped.error());
    const auto second = seekFrame();
    if (!second)
        return tl::unexpected(second.error());
    header.secondFrame = *second;
    return header;
}

Result<void> GifWalker::walkToTrailer() {
    for (;;) {
        const auto frame = seekFrame();
        if (!frame)
            return tl::unexpected(frame.error());
        if (!*frame)
            return {};
        if (const auto read = readFrame(); !read)
            return tl::unexpected(read.error());
        if (const auto skipped = skipPixels(); !skipped)
            return tl::unexpected(skipped.error());
    }
}

} // namespace

Result<GifHeader> readGifHeader(const ByteSource& source) {
    auto header = GifWalker(source).readHeader();
    if (!header)
        return header;
    const GifFrame& frame = header->firstFrame;
    if (header->screenWidth == 0 || header->screenHeight == 0) {
        header->screenWidth = frame.left + frame.width;
        header->screenHeight = frame.top + frame.height;
    }
    return header;
}

Result<void> checkGifTrailer(const ByteSource& source, std::uint64_t position) {
    return GifWalker(source, position).walkToTrailer();
}

} // namespace GdiplusBackend
