#include "gdiplus/codecs/PngDecoder.h"

#include "gdiplus/codecs/CodecTable.h"
#include "gdiplus/codecs/pngdecoder/PngChunks.h"
#include "gdiplus/codecs/pngdecoder/PngRows.h"

#include <fmt/format.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

/// The most that one byte of deflated data (RFC 1951) can stand for: four copies of 258 bytes.
constexpr std::uint64_t mostBytesPerByte = 1032;

PictureFacts factsOf(PngHeader& header, const PngSamples& samples) {
    PictureFacts facts;
    facts.width = static_cast<int>(header.width);
    facts.height = static_cast<int>(header.height);
    facts.layout = samples.layout();
    facts.palette = samples.palette();
    facts.rawFormat = Gdiplus::ImageFormatPNG;
    facts.flags = Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize;
    const bool grey = header.colour == PngColour::Grey || header.colour == PngColour::GreyAlpha;
    facts.flags |= grey ? Gdiplus::ImageFlagsColorSpaceGRAY : Gdiplus::ImageFlagsColorSpaceRGB;
    if (samples.hasAlpha())
        facts.flags |= Gdiplus::ImageFlagsHasAlpha;
    if (header.pixelsPerMetreX > 0 && header.pixelsPerMetreY > 0) {
        constexpr float metresPerInch = 0.0254F;
        facts.dpiX = static_cast<float>(header.pixelsPerMetreX) * metresPerInch;
        facts.dpiY = static_cast<float>(header.pixelsPerMetreY) * metresPerInch;
        facts.flags |= Gdiplus::ImageFlagsHasRealDPI;
    }
    facts.iccProfile = std::exchange(header.iccProfile, {});
    return facts;
}

/// The content of consecutive IDAT chunks.
Result<std::span<const std::byte>> nextPiece(PngChunks& chunks) {
    constexpr std::size_t largestPiece = std::size_t{64} * 1024;
    while (chunks.is("IDAT")) {
        auto piece = chunks.take(largestPiece);
        if (!piece || !piece->empty())
            return piece;
        Result<void> done = chunks.finish();
        if (done)
            done = chunks.next();
        if (!done)
            return tl::unexpected(done.error());
    }
    return std::span<const std::byte>();
}

Result<void> readToEnd(PngChunks& chunks) {
    for (;;) {
        const bool skipped = !chunks.isCritical();
        if (Result<void> done = skipped ? Result<void>() : chunks.finish(); !done || chunks.is("IEND"))
            return done;
        if (Result<void> found = chunks.next(); !found)
            return found;
    }
}

} // namespace

bool PngDecoder::recognises(std::span<const std::byte> head) {
    return startsWith(head, pngSignature);
}

Result<std::unique_ptr<PictureDecoder>> PngDecoder::open(std::shared_ptr<const ByteSource> source) {
    Result<PngHeader> header = readPngHeader(*source);
    if (!header)
        return tl::unexpected(header.error());
    if (unpackedBytes(*header) / mostBytesPerByte > source->size())
        return truncated(fmt::format("PNG: {} bytes can't hold {} x {} pixels", source->size(), header->width,
                                     header->height));
    PngSamples samples(*header);
    PictureFacts facts = factsOf(*header, samples);
    return std::unique_ptr<PictureDecoder>(
        new PngDecoder(std::move(facts), std::move(*header), std::move(samples), std::move(source)));
}

PngDecoder::PngDecoder(PictureFacts facts, PngHeader ofFile, PngSamples toLayout,
                       std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(std::move(facts))
    , header(std::move(ofFile))
    , samples(std::move(toLayout))
    , source(std::move(bytes)) {}

Result<void> PngDecoder::decode(int, RowSink& sink) const {
    PngChunks chunks(*source, header.imageData);
    if (Result<void> found = chunks.next(); !found)
        return found;
    ZlibStream stream([&chunks] { return nextPiece(chunks); });
    Result<void> done;
    if (header.interlaced) {
        const auto rows = PngInterlacedRows::read(stream, samples, header);
        if (!rows)
            return tl::unexpected(rows.error());
        std::uint32_t y = 0;
        done = giveRows([&] { return Result<std::span<const std::byte>>(rows->row(y++)); }, sink);
    } else {
        PngRows rows(stream, samples, header.rowBytes(header.width), std::max(1, header.bitsPerPixel() / 8));
        done = giveRows([&rows] { return rows.next(); }, sink);
    }
    if (done)
        done = stream.finish();
    return done ? readToEnd(chunks) : done;
}

template <typename NextRow>
Result<void> PngDecoder::giveRows(NextRow nextRow, RowSink& sink) const {
    std::vector<std::byte> converted;
    if (!samples.givesRowsAsTheyAre())
        converted.resize(static_cast<std::size_t>(header.width) * 4);
    for (std::uint32_t y = 0; y < header.height; ++y) {
        const Result<std::span<const std::byte>> row = nextRow();
        if (!row)
            return tl::unexpected(row.error());
        if (samples.givesRowsAsTheyAre()) {
            sink.putRow(*row);
        } else {
            samples.convert(*row, header.width, converted);
            sink.putRow(converted);
        }
    }
    return {};
}

} // namespace GdiplusBackend
