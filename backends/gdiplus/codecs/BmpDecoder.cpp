#include "gdiplus/codecs/BmpDecoder.h"

#include "gdiplus/codecs/CodecTable.h"
#include "gdiplus/codecs/bmpdecoder/BmpSamples.h"
#include "gdiplus/codecs/bmpdecoder/RunLengthPicture.h"

#include <algorithm>

namespace GdiplusBackend {

namespace {

constexpr std::size_t blockBytes = std::size_t{256} * 1024;

tl::unexpected<LoadError> endsEarly() {
    return truncated("BMP: the file ends before the picture does");
}

PictureFacts factsOf(const BmpHeader& header) {
    PictureFacts facts;
    facts.width = static_cast<int>(header.width);
    facts.height = static_cast<int>(header.height);
    facts.layout = BmpSamples::layoutOf(header);
    facts.palette = header.palette;
    if (facts.layout == RowLayout::Bits4)
        facts.palette.resize(16, 0xFF000000); // for two bits the file has four
    facts.rawFormat = Gdiplus::ImageFormatBMP;
    facts.flags =
        Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize | Gdiplus::ImageFlagsColorSpaceRGB;
    if (header.pixelsPerMetreX > 0 && header.pixelsPerMetreY > 0) {
        constexpr float metresPerInch = 0.0254F;
        facts.dpiX = static_cast<float>(header.pixelsPerMetreX) * metresPerInch;
        facts.dpiY = static_cast<float>(header.pixelsPerMetreY) * metresPerInch;
        facts.flags |= Gdiplus::ImageFlagsHasRealDPI;
    }
    return facts;
}

} // namespace

bool BmpDecoder::recognises(std::span<const std::byte> head) {
    return startsWith(head, "BM") && looksLikeBmp(head);
}

Result<std::unique_ptr<PictureDecoder>> BmpDecoder::open(std::shared_ptr<const ByteSource> source) {
    Result<BmpHeader> header = readBmpHeader(*source);
    if (!header)
        return tl::unexpected(header.error());
    const bool plain = header->coding == BmpHeader::Coding::Plain;
    if (plain && source->size() < header->pixels + std::uint64_t{header->stride()} * header->height)
        return endsEarly();
    PictureFacts facts = factsOf(*header);
    return std::unique_ptr<PictureDecoder>(
        new BmpDecoder(std::move(facts), std::move(*header), std::move(source)));
}

BmpDecoder::BmpDecoder(PictureFacts facts, BmpHeader ofFile, std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(std::move(facts))
    , header(std::move(ofFile))
    , source(std::move(bytes)) {}

Result<void> BmpDecoder::decode(int, RowSink& sink) const {
    if (header.coding == BmpHeader::Coding::Plain)
        return decodePlain(sink);
    const Result<RunLengthPicture> picture = RunLengthPicture::read(header, *source);
    if (!picture)
        return tl::unexpected(picture.error());
    for (std::uint32_t y = 0; y < header.height; ++y)
        sink.putRow(picture->row(y));
    return {};
}

Result<void> BmpDecoder::decodePlain(RowSink& sink) const {
    const std::size_t stride = header.stride();
    const std::uint32_t most =
        static_cast<std::uint32_t>(std::clamp<std::size_t>(blockBytes / stride, 1, header.height));
    const bool bottomUp = header.order == BmpHeader::RowOrder::BottomUp;
    BmpSamples samples(header);
    std::vector<std::byte> block(most * stride);
    for (std::uint32_t done = 0; done < header.height;) {
        const std::uint32_t count = std::min(most, header.height - done);
        // The rows of a block lie together, whichever way they go.
        const std::uint64_t firstInFile = bottomUp ? header.height - done - count : done;
        const auto rows = std::span(block).first(count * stride);
        if (source->read(header.pixels + firstInFile * stride, rows) != rows.size())
            return endsEarly();
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::size_t row = bottomUp ? count - 1 - i : i;
            sink.putRow(samples.converted(rows.subspan(row * stride, header.rowBytes())));
        }
        done += count;
    }
    return {};
}

} // namespace GdiplusBackend
