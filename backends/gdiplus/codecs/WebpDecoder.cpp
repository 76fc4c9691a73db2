#include "gdiplus/codecs/WebpDecoder.h"

#include "gdiplus/codecs/CodecTable.h"
#include "gdiplus/codecs/PixelBudget.h"

#include <webp/decode.h>

#include <algorithm>
#include <array>
#include <new>

namespace GdiplusBackend {

namespace {

constexpr std::array lossyReductions = {4, 8};

PictureFacts factsOf(WebpHeader& header) {
    PictureFacts facts;
    facts.width = header.width;
    facts.height = header.height;
    facts.flags =
        Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize | Gdiplus::ImageFlagsColorSpaceRGB;
    // A frame may leave a part of its canvas free.
    if (header.hasAlpha || header.animated) {
        facts.layout = RowLayout::Bgra32;
        facts.flags |= Gdiplus::ImageFlagsHasAlpha;
    } else {
        facts.layout = RowLayout::Bgr24;
        if (header.coding == WebpCoding::Lossy)
            facts.reductions = lossyReductions;
    }
    facts.iccProfile = std::move(header.iccProfile);
    facts.exif = std::move(header.exif);
    return facts;
}

Result<void> checkStatus(VP8StatusCode status) {
    switch (status) {
    case VP8_STATUS_OK:
        return {};
    case VP8_STATUS_OUT_OF_MEMORY:
        throw std::bad_alloc();
    case VP8_STATUS_SUSPENDED:
    case VP8_STATUS_NOT_ENOUGH_DATA:
        return truncated("the WebP picture ends early");
    case VP8_STATUS_INVALID_PARAM:
    case VP8_STATUS_BITSTREAM_ERROR:
    case VP8_STATUS_UNSUPPORTED_FEATURE:
    case VP8_STATUS_USER_ABORT:
        break;
    }
    return damaged("the WebP picture is damaged");
}

/// Pixels unpacked by libwebp, in its memory.
class WebpPixels {
public:
    explicit WebpPixels(RowLayout layout) {
        WebPInitDecoderConfig(&config);
        config.output.colorspace = layout == RowLayout::Bgra32 ? MODE_BGRA : MODE_BGR;
        bytesPerPixel = layout == RowLayout::Bgra32 ? 4 : 3;
    }
    ~WebpPixels() { WebPFreeDecBuffer(&config.output); }
    WebpPixels(const WebpPixels&) = delete;
    WebpPixels& operator=(const WebpPixels&) = delete;

    void scaleTo(int scaledWidth, int scaledHeight) {
        config.options.use_scaling = 1;
        config.options.scaled_width = scaledWidth;
        config.options.scaled_height = scaledHeight;
    }

    /// The size is compared before any memory is taken for it.
    Result<void> unpack(std::span<const std::byte> file, int mostWide, int mostHigh) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(file.data());
        if (auto read = checkStatus(WebPGetFeatures(bytes, file.size(), &config.input)); !read)
            return read;
        if (config.input.width > mostWide || config.input.height > mostHigh)
            return damaged("WebP: a frame reaches beyond its canvas");
        return checkStatus(WebPDecode(bytes, file.size(), &config));
    }

    int width() const { return config.output.width; }
    int height() const { return config.output.height; }

    std::span<const std::byte> row(int y) const {
        const WebPRGBABuffer& buffer = config.output.u.RGBA;
        const std::uint8_t* start = buffer.rgba + static_cast<std::ptrdiff_t>(y) * buffer.stride;
        return std::as_bytes(std::span(start, static_cast<std::size_t>(width()) * bytesPerPixel));
    }

private:
    WebPDecoderConfig config = {};
    std::size_t bytesPerPixel = 0;
};

Result<std::vector<std::byte>> readPicture(const ByteSource& source, const WebpHeader& header) {
    std::vector<std::byte> bytes(header.pictureBytes);
    if (source.read(header.pictureStart, bytes) != bytes.size())
        return truncated("the WebP file became shorter while it was read");
    return bytes;
}

} // namespace

WebpDecoder::WebpDecoder(PictureFacts facts, WebpHeader webpHeader, std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(std::move(facts))
    , header(std::move(webpHeader))
    , source(std::move(bytes)) {}

bool WebpDecoder::recognises(std::span<const std::byte> head) {
    constexpr std::size_t formStart = 8;
    return startsWith(head, "RIFF") && head.size() > formStart && startsWith(head.subspan(formStart), "WEBP");
}

Result<std::unique_ptr<PictureDecoder>> WebpDecoder::open(std::shared_ptr<const ByteSource> source) {
    auto header = readWebpHeader(*source);
    if (!header)
        return tl::unexpected(header.error());
    if (const auto fits = checkPixelBudget(static_cast<std::uint64_t>(header->width),
                                           static_cast<std::uint64_t>(header->height));
        !fits)
        return tl::unexpected(fits.error());
    PictureFacts facts = factsOf(*header);
    return std::unique_ptr<PictureDecoder>(
        new WebpDecoder(std::move(facts), std::move(*header), std::move(source)));
}

Result<void> WebpDecoder::decode(int reduction, RowSink& sink) const {
    if (header.animated)
        return decodeFrame(sink);
    const auto file = readPicture(*source, header);
    if (!file)
        return tl::unexpected(file.error());
    const int width = reducedLength(header.width, reduction);
    const int height = reducedLength(header.height, reduction);
    WebpPixels pixels(facts().layout);
    if (reduction > 1)
        pixels.scaleTo(width, height);
    if (auto unpacked = pixels.unpack(*file, header.width, header.height); !unpacked)
        return unpacked;
    if (pixels.width() != width || pixels.height() != height)
        return damaged("the WebP file changed while it was open");
    for (int y = 0; y < height; ++y)
        sink.putRow(pixels.row(y));
    return {};
}

Result<void> WebpDecoder::decodeFrame(RowSink& sink) const {
    const auto frame = readPicture(*source, header);
    if (!frame)
        return tl::unexpected(frame.error());
    WebpPixels pixels(RowLayout::Bgra32);
    if (auto unpacked = pixels.unpack(*frame, header.width - header.left, header.height - header.top);
        !unpacked)
        return unpacked;
    std::vector<std::byte> row(static_cast<std::size_t>(header.width) * 4);
    for (int y = 0; y < header.height; ++y) {
        std::fill(row.begin(), row.end(), std::byte{0});
        if (y >= header.top && y < header.top + pixels.height()) {
            const auto part = pixels.row(y - header.top);
            std::copy(part.begin(), part.end(), row.begin() + static_cast<std::ptrdiff_t>(header.left) * 4);
        }
        sink.putRow(row);
    }
    return {};
}

} // namespace GdiplusBackend
