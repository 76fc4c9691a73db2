#include "gdiplus/codecs/bmpdecoder/BmpHeader.h"

#include "gdiplus/codecs/PixelBudget.h"

#include <algorithm>
#include <cstdlib>

namespace GdiplusBackend {

namespace {

constexpr std::size_t fileHeaderBytes = 14;
// The size of the header that follows is its version.
constexpr std::uint32_t coreHeader = 12;
constexpr std::uint32_t shortestOs2Header = 16;
constexpr std::uint32_t infoHeader = 40;
constexpr std::uint32_t headerWithMasks = 52;
constexpr std::uint32_t os2Header = 64;
constexpr std::uint32_t longestHeader = 124;

enum StoredCoding : std::uint32_t {
    StoredPlain = 0,
    StoredRunLength8 = 1,
    StoredRunLength4 = 2,
    StoredMasks = 3,
    StoredJpeg = 4,
    StoredPng = 5,
    StoredMasksWithAlpha = 6,
};

/// Little-endian fields; what lies behind the end of the bytes reads as zero, as in the shorter headers.
class Fields {
public:
    explicit Fields(std::span<const std::byte> content)
        : bytes(content) {}

    std::uint32_t word16(std::size_t place) const { return byte(place) | byte(place + 1) << 8; }
    std::uint32_t word32(std::size_t place) const { return word16(place) | word16(place + 2) << 16; }

private:
    std::uint32_t byte(std::size_t place) const {
        return place < bytes.size() ? std::to_integer<std::uint32_t>(bytes[place]) : 0;
    }

    std::span<const std::byte> bytes;
};

bool isHeaderSize(std::uint32_t size) {
    return size == coreHeader || (size >= shortestOs2Header && size <= longestHeader);
}

tl::unexpected<LoadError> endsEarly() {
    return truncated("BMP: the file ends before the picture does");
}

Result<std::vector<std::byte>> readAt(const ByteSource& source, std::uint64_t place, std::size_t count) {
    std::vector<std::byte> bytes(count);
    if (source.read(place, bytes) != count)
        return endsEarly();
    return bytes;
}

Result<void> readSize(BmpHeader& header, const Fields& fields, bool core) {
    const auto width = static_cast<std::int32_t>(core ? fields.word16(4) : fields.word32(4));
    const auto height = std::int64_t{static_cast<std::int32_t>(core ? fields.word16(6) : fields.word32(8))};
    if (width <= 0 || height == 0)
        return damaged("BMP: a picture needs a positive size");
    header.width = static_cast<std::uint32_t>(width);
    header.height = static_cast<std::uint32_t>(std::abs(height));
    header.order = height < 0 ? BmpHeader::RowOrder::TopDown : BmpHeader::RowOrder::BottomUp;
    return checkPixelBudget(header.width, header.height);
}

Result<void> setCoding(BmpHeader& header, std::uint32_t coding, std::uint32_t headerSize) {
    const int bits = header.bitsPerPixel;
    const bool known =
        bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    const bool masked = coding == StoredMasks || coding == StoredMasksWithAlpha;
    if (coding == StoredJpeg || coding == StoredPng || (masked && headerSize == os2Header))
        return tl::unexpected(LoadError{Gdiplus::UnknownImageFormat, "BMP: a coding that is not BMP's own"});
    const bool topDown = header.order == BmpHeader::RowOrder::TopDown;
    if (coding == StoredRunLength8 && bits == 8 && !topDown)
        header.coding = BmpHeader::Coding::RunLength8;
    else if (coding == StoredRunLength4 && bits == 4 && !topDown)
        header.coding = BmpHeader::Coding::RunLength4;
    else if (!(known && coding == StoredPlain) && !(masked && (bits == 16 || bits == 32)))
        return damaged("BMP: a kind of picture that does not exist");
    return {};
}

/// `place` is where the header ends; moves on over masks that follow it.
Result<void> readMasks(BmpHeader& header, const Fields& fields, std::uint32_t coding,
                       const ByteSource& source, std::uint32_t headerSize, std::uint64_t& place) {
    if (coding != StoredMasks && coding != StoredMasksWithAlpha) {
        header.masks = header.bitsPerPixel == 16 ? std::array<std::uint32_t, 3>{0x7C00, 0x03E0, 0x001F}
                                                 : std::array<std::uint32_t, 3>{0xFF0000, 0x00FF00, 0x0000FF};
        return {};
    }
    if (headerSize >= headerWithMasks) {
        header.masks = {fields.word32(40), fields.word32(44), fields.word32(48)};
        return {};
    }
    const auto bytes = readAt(source, place, coding == StoredMasks ? 12 : 16);
    if (!bytes)
        return tl::unexpected(bytes.error());
    const Fields following(*bytes);
    header.masks = {following.word32(0), following.word32(4), following.word32(8)};
    place += bytes->size();
    return {};
}

/// As many entries as there are, by the header and by the place of the pixels; the rest is black.
Result<void> readPalette(BmpHeader& header, std::uint32_t stated, const ByteSource& source, bool core,
                         std::uint64_t& place) {
    const std::uint64_t most = std::uint64_t{1} << header.bitsPerPixel;
    const std::uint64_t entryBytes = core ? 3 : 4;
    std::uint64_t count = stated == 0 ? most : std::min<std::uint64_t>(stated, most);
    if (header.pixels >= place)
        count = std::min(count, (header.pixels - place) / entryBytes);
    const auto bytes = readAt(source, place, static_cast<std::size_t>(count * entryBytes));
    if (!bytes)
        return tl::unexpected(bytes.error());
    header.palette.assign(static_cast<std::size_t>(most), 0xFF000000);
    const Fields fields(*bytes);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = i * static_cast<std::size_t>(entryBytes);
        header.palette[i] |= fields.word32(entry) & 0xFFFFFF;
    }
    place += bytes->size();
    return {};
}

} // namespace

bool looksLikeBmp(std::span<const std::byte> head) {
    constexpr std::size_t sizeField = fileHeaderBytes + 4;
    return head.size() < sizeField || isHeaderSize(Fields(head).word32(fileHeaderBytes));
}

Result<BmpHeader> readBmpHeader(const ByteSource& source) {
    const auto start = readAt(source, 0, fileHeaderBytes + 4);
    if (!start)
        return tl::unexpected(start.error());
    const std::uint32_t headerSize = Fields(*start).word32(fileHeaderBytes);
    if (!isHeaderSize(headerSize))
        return damaged("BMP: a header of unknown size");
    const auto bytes = readAt(source, fileHeaderBytes, headerSize);
    if (!bytes)
        return tl::unexpected(bytes.error());
    const Fields fields(*bytes);
    const bool core = headerSize == coreHeader;
    const std::uint32_t coding = core ? StoredPlain : fields.word32(16);

    BmpHeader header;
    header.pixels = Fields(*start).word32(10);
    header.bitsPerPixel = static_cast<int>(fields.word16(core ? 10 : 14));
    std::uint64_t place = fileHeaderBytes + std::uint64_t{headerSize};
    Result<void> done = readSize(header, fields, core);
    if (done)
        done = setCoding(header, coding, headerSize);
    if (done)
        done = readMasks(header, fields, coding, source, headerSize, place);
    if (done && header.bitsPerPixel <= 8)
        done = readPalette(header, core ? 0 : fields.word32(32), source, core, place);
    if (!done)
        return tl::unexpected(done.error());
    header.pixels = std::max(header.pixels, place);
    if (!core && headerSize >= infoHeader) {
        header.pixelsPerMetreX = fields.word32(24);
        header.pixelsPerMetreY = fields.word32(28);
    }
    return header;
}

} // namespace GdiplusBackend
