#include "gdiplus/codecs/pngdecoder/PngHeader.h"

#include "gdiplus/codecs/PixelBudget.h"
#include "gdiplus/codecs/pngdecoder/PngChunks.h"
#include "gdiplus/codecs/pngdecoder/ZlibStream.h"

#include <algorithm>

namespace GdiplusBackend {

namespace {

constexpr std::size_t longestPalette = 256 * std::size_t{3};
constexpr std::size_t longestTransparency = 256;
constexpr std::size_t resolutionBytes = 9;
constexpr std::size_t longestPackedProfile = std::size_t{16} << 20;
constexpr std::size_t longestProfile = std::size_t{64} << 20;

int channelsOf(PngColour colour) {
    switch (colour) {
    case PngColour::Grey:
    case PngColour::Palette:
        return 1;
    case PngColour::GreyAlpha:
        return 2;
    case PngColour::Rgb:
        return 3;
    case PngColour::RgbAlpha:
        return 4;
    }
    return 0;
}

/// ISO/IEC 15948, table 11.1.
bool isAllowed(int colour, int bitDepth) {
    const bool fewBits = bitDepth == 1 || bitDepth == 2 || bitDepth == 4;
    switch (colour) {
    case 0:
        return fewBits || bitDepth == 8 || bitDepth == 16;
    case 3:
        return fewBits || bitDepth == 8;
    case 2:
    case 4:
    case 6:
        return bitDepth == 8 || bitDepth == 16;
    default:
        return false;
    }
}

Result<PngHeader> headerChunk(PngChunks& chunks) {
    constexpr std::uint32_t headerBytes = 13;
    if (Result<void> found = chunks.next(); !found)
        return tl::unexpected(found.error());
    if (!chunks.is("IHDR") || chunks.length() != headerBytes)
        return damaged("PNG: the header chunk is missing");
    const auto bytes = chunks.content(headerBytes);
    if (!bytes)
        return tl::unexpected(bytes.error());
    const std::span<const std::byte> fields(*bytes);
    const int colour = std::to_integer<int>(fields[9]);
    const int interlace = std::to_integer<int>(fields[12]);
    PngHeader header;
    header.width = bigEndian32(fields.subspan<0, 4>());
    header.height = bigEndian32(fields.subspan<4, 4>());
    header.bitDepth = std::to_integer<int>(fields[8]);
    if (!isAllowed(colour, header.bitDepth) || fields[10] != std::byte{0} || fields[11] != std::byte{0} ||
        interlace > 1)
        return damaged("PNG: a kind of picture that the standard does not know");
    header.colour = static_cast<PngColour>(colour);
    header.interlaced = interlace == 1;
    return header;
}

Result<void> readPalette(PngChunks& chunks, PngHeader& header) {
    auto entries = chunks.content(longestPalette);
    if (!entries)
        return tl::unexpected(entries.error());
    if (entries->empty() || entries->size() % 3 != 0 || !header.palette.empty())
        return damaged("PNG: a palette that is none");
    header.palette = std::move(*entries);
    return {};
}

std::size_t transparencyBytes(const PngHeader& header, std::size_t stored) {
    switch (header.colour) {
    case PngColour::Grey:
        return 2;
    case PngColour::Rgb:
        return 6;
    case PngColour::Palette:
        return std::min(stored, std::size_t{1} << header.bitDepth);
    case PngColour::GreyAlpha:
    case PngColour::RgbAlpha:
        return 0;
    }
    return 0;
}

std::vector<std::byte> unpackedProfile(std::span<const std::byte> content) {
    // ISO/IEC 15948, 11.3.3.3: a name, its terminator, the method, the compressed profile.
    const auto nameEnd = std::find(content.begin(), content.end(), std::byte{0});
    const auto nameBytes = static_cast<std::size_t>(nameEnd - content.begin());
    if (content.size() < nameBytes + 2 || content[nameBytes + 1] != std::byte{0})
        return {};
    std::span<const std::byte> rest = content.subspan(nameBytes + 2);
    ZlibStream stream([&rest] { return std::exchange(rest, {}); });
    auto profile = stream.readAll(longestProfile);
    return profile ? std::move(*profile) : std::vector<std::byte>();
}

/// What only adds to the picture. A damaged chunk of that kind counts as absent, unless the file ends in it.
class AncillaryChunks {
public:
    explicit AncillaryChunks(PngHeader& target)
        : header(target) {}

    Result<void> read(PngChunks& chunks) {
        const std::size_t most = longestContentOf(chunks);
        if (most == 0 || chunks.length() > most)
            return {};
        const auto content = chunks.content(most);
        if (content)
            keep(chunks, *content);
        else if (content.error().status == Gdiplus::Aborted)
            return tl::unexpected(content.error());
        return {};
    }

    void finish() {
        if (!standardColours)
            header.iccProfile = unpackedProfile(packedProfile);
    }

private:
    static std::size_t longestContentOf(const PngChunks& chunks) {
        if (chunks.is("tRNS"))
            return longestTransparency;
        if (chunks.is("pHYs"))
            return resolutionBytes;
        if (chunks.is("iCCP"))
            return longestPackedProfile;
        return chunks.is("sRGB") ? 1 : 0;
    }

    void keep(const PngChunks& chunks, const std::vector<std::byte>& content) {
        if (chunks.is("tRNS"))
            keepTransparency(content);
        else if (chunks.is("pHYs"))
            keepResolution(content);
        else if (chunks.is("iCCP"))
            packedProfile = content;
        else
            standardColours = true;
    }

    void keepTransparency(const std::vector<std::byte>& content) {
        const std::size_t wanted = transparencyBytes(header, content.size());
        if (content.size() >= wanted)
            header.transparency.assign(content.begin(),
                                       content.begin() + static_cast<std::ptrdiff_t>(wanted));
    }

    void keepResolution(std::span<const std::byte> content) {
        constexpr std::byte metre{1};
        if (content.size() != resolutionBytes || content[8] != metre)
            return;
        header.pixelsPerMetreX = bigEndian32(content.subspan<0, 4>());
        header.pixelsPerMetreY = bigEndian32(content.subspan<4, 4>());
    }

    PngHeader& header;
    std::vector<std::byte> packedProfile;
    bool standardColours = false;
};

} // namespace

int PngHeader::bitsPerPixel() const {
    return channelsOf(colour) * bitDepth;
}

std::size_t PngHeader::rowBytes(std::uint32_t pixels) const {
    return (static_cast<std::size_t>(pixels) * static_cast<std::size_t>(bitsPerPixel()) + 7) / 8;
}

Result<PngHeader> readPngHeader(const ByteSource& source) {
    PngChunks chunks(source, pngSignature.size());
    Result<PngHeader> header = headerChunk(chunks);
    if (!header)
        return header;
    if (Result<void> fits = checkPixelBudget(header->width, header->height); !fits)
        return tl::unexpected(fits.error());
    AncillaryChunks ancillary(*header);
    for (;;) {
        Result<void> done = chunks.next();
        if (done && chunks.is("IDAT"))
            break;
        if (done && chunks.is("PLTE"))
            done = readPalette(chunks, *header);
        else if (done && chunks.isCritical())
            done = damaged("PNG: a critical chunk that is unknown or in the wrong place");
        else if (done)
            done = ancillary.read(chunks);
        if (!done)
            return tl::unexpected(done.error());
    }
    if (header->colour == PngColour::Palette && header->palette.empty())
        return damaged("PNG: the palette is missing");
    ancillary.finish();
    header->imageData = chunks.start();
    return header;
}

} // namespace GdiplusBackend
