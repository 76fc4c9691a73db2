#include "gdiplus/codecs/GifDecoder.h"

#include "gdiplus/codecs/CodecTable.h"
#include "gdiplus/codecs/PixelBudget.h"
#include "gdiplus/codecs/gifdecoder/GifBlocks.h"
#include "gdiplus/codecs/gifdecoder/GifLines.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace GdiplusBackend {

namespace {

constexpr std::size_t largestPalette = 256;

bool coversScreen(const GifHeader& header) {
    const GifFrame& frame = header.firstFrame;
    return frame.left == 0 && frame.top == 0 && frame.width >= header.screenWidth &&
           frame.height >= header.screenHeight;
}

/// The colours that pixels of the first frame name, and what shows where it has no pixels.
struct GifColours {
    std::vector<Gdiplus::ARGB> palette;
    std::optional<int> emptyIndex; ///< a transparent entry of the palette
};

GifColours coloursOf(const GifHeader& header) {
    GifColours colours = {.palette = header.firstFrame.palette,
                          .emptyIndex = header.firstFrame.transparentIndex};
    auto& palette = colours.palette;
    if (!colours.emptyIndex && !coversScreen(header) && palette.size() < largestPalette)
        colours.emptyIndex = static_cast<int>(palette.size());
    if (colours.emptyIndex) {
        const auto index = static_cast<std::size_t>(*colours.emptyIndex);
        palette.resize(std::max(palette.size(), index + 1), 0xFF000000);
        palette[index] &= 0x00FFFFFFU;
    }
    return colours;
}

/// Turns indices of the first frame into pixels of a row on the logical screen.
class ScreenRow {
public:
    ScreenRow(const GifHeader& gifHeader, const PictureFacts& pictureFacts)
        : header(gifHeader)
        , layout(pictureFacts.layout)
        , colours(coloursOf(gifHeader)) {
        for (std::size_t index = 0; index < largestPalette; ++index) {
            // Indices without a colour name the first one.
            const std::size_t known = index < colours.palette.size() ? index : 0;
            indices[index] = static_cast<std::byte>(known);
            pixels[index] = colours.palette[known];
        }
        row.resize(static_cast<std::size_t>(header.screenWidth * bitsPerPixel(layout) / 8));
    }

    std::span<const std::byte> empty() {
        const int index = layout == RowLayout::Index8 ? colours.emptyIndex.value_or(0) : 0;
        std::fill(row.begin(), row.end(), static_cast<std::byte>(index));
        return row;
    }

    std::span<const std::byte> with(std::span<const std::byte> line) {
        if (!coversScreen(header))
            empty();
        const auto left = static_cast<std::size_t>(header.firstFrame.left);
        const auto screenWidth = static_cast<std::size_t>(header.screenWidth);
        const std::size_t count = left < screenWidth ? std::min(line.size(), screenWidth - left) : 0;
        for (std::size_t x = 0; x < count; ++x)
            put(left + x, std::to_integer<std::size_t>(line[x]));
        return row;
    }

private:
    void put(std::size_t x, std::size_t index) {
        if (layout == RowLayout::Index8)
            row[x] = indices[index];
        else // the value's bytes in memory are B, G, R, A
            std::memcpy(&row[x * 4], &pixels[index], 4);
    }

    const GifHeader& header;
    RowLayout layout;
    GifColours colours;
    std::array<std::byte, largestPalette> indices = {};
    std::array<Gdiplus::ARGB, largestPalette> pixels = {};
    std::vector<std::byte> row;
};

PictureFacts factsOf(const GifHeader& header) {
    PictureFacts facts;
    facts.width = header.screenWidth;
    facts.height = header.screenHeight;
    facts.rawFormat = Gdiplus::ImageFormatGIF;
    facts.flags = Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize |
                  Gdiplus::ImageFlagsHasRealDPI | Gdiplus::ImageFlagsColorSpaceRGB;
    GifColours colours = coloursOf(header);
    const bool paletteSuffices = colours.emptyIndex || coversScreen(header);
    if (!header.isAnimated && paletteSuffices) {
        facts.layout = RowLayout::Index8;
        facts.palette = std::move(colours.palette);
        facts.flags |= colours.emptyIndex ? Gdiplus::ImageFlagsHasAlpha : 0U;
    } else {
        facts.layout = RowLayout::Bgra32;
        facts.flags |= Gdiplus::ImageFlagsHasAlpha;
    }
    return facts;
}

} // namespace

GifDecoder::GifDecoder(GifHeader gifHeader, std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(factsOf(gifHeader))
    , header(std::move(gifHeader))
    , source(std::move(bytes)) {}

bool GifDecoder::recognises(std::span<const std::byte> head) {
    return startsWith(head, "GIF87a") || startsWith(head, "GIF89a");
}

Result<std::unique_ptr<PictureDecoder>> GifDecoder::open(std::shared_ptr<const ByteSource> source) {
    auto header = readGifHeader(*source);
    if (!header)
        return tl::unexpected(header.error());
    const auto pixels = [](int length) { return static_cast<std::uint64_t>(length); };
    if (const auto fits = checkPixelBudget(pixels(header->screenWidth), pixels(header->screenHeight)); !fits)
        return tl::unexpected(fits.error());
    const GifFrame& frame = header->firstFrame;
    if (const auto fits = checkPixelBudget(pixels(frame.width), pixels(frame.height)); !fits)
        return tl::unexpected(fits.error());
    if (frame.palette.empty())
        return damaged("a GIF frame without a palette");
    return std::unique_ptr<PictureDecoder>(new GifDecoder(std::move(*header), std::move(source)));
}

Result<void> GifDecoder::decode(int /*reduction*/, RowSink& sink) const {
    if (header.isAnimated)
        if (auto complete = checkGifTrailer(*source); !complete)
            return complete;
    const GifFrame& frame = header.firstFrame;
    GifLines lines(*source, frame);
    if (auto started = lines.start(); !started)
        return started;
    ScreenRow row(header, facts());
    for (int y = 0; y < header.screenHeight; ++y) {
        if (y < frame.top || y >= frame.top + frame.height) {
            sink.putRow(row.empty());
            continue;
        }
        const auto line = lines.next();
        if (!line)
            return tl::unexpected(line.error());
        sink.putRow(row.with(*line));
    }
    return {};
}

} // namespace GdiplusBackend
