#include "gdiplus/codecs/modules/HeifDecoder.h"

#include "gdiplus/codecs/PixelBudget.h"
#include "gdiplus/codecs/StraightAlpha.h"
#include "gdiplus/codecs/modules/HeifFile.h"

#include <algorithm>

namespace GdiplusBackend {

namespace {

std::vector<std::byte> profileOf(const heif_image_handle* handle) {
    std::vector<std::byte> profile(heif_image_handle_get_raw_color_profile_size(handle));
    if (profile.empty() || heif_image_handle_get_raw_color_profile(handle, profile.data()).code)
        return {};
    return profile;
}

PictureFacts factsOf(const heif_image_handle* handle) {
    PictureFacts facts;
    facts.width = heif_image_handle_get_width(handle);
    facts.height = heif_image_handle_get_height(handle);
    facts.flags =
        Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize | Gdiplus::ImageFlagsColorSpaceRGB;
    const bool hasAlpha = heif_image_handle_has_alpha_channel(handle) != 0;
    facts.layout = hasAlpha ? RowLayout::Bgra32 : RowLayout::Bgr24;
    facts.flags |= hasAlpha ? Gdiplus::ImageFlagsHasAlpha : 0U;
    facts.iccProfile = profileOf(handle);
    return facts;
}

/// Swaps red and blue.
void putBgr(std::span<const std::uint8_t> rgb, std::span<std::byte> row, std::size_t channels) {
    for (std::size_t pixel = 0; pixel < row.size(); pixel += channels) {
        row[pixel] = std::byte{rgb[pixel + 2]};
        row[pixel + 1] = std::byte{rgb[pixel + 1]};
        row[pixel + 2] = std::byte{rgb[pixel]};
        if (channels == 4)
            row[pixel + 3] = std::byte{rgb[pixel + 3]};
    }
}

} // namespace

HeifDecoder::HeifDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(std::move(facts))
    , source(std::move(bytes)) {}

Result<std::unique_ptr<PictureDecoder>> HeifDecoder::open(std::shared_ptr<const ByteSource> source) {
    const auto file = HeifFile::open(source);
    if (!file)
        return tl::unexpected(file.error());
    PictureFacts facts = factsOf((*file)->primary());
    const auto pixels = [](int length) { return static_cast<std::uint64_t>(std::max(length, 0)); };
    if (const auto fits = checkPixelBudget(pixels(facts.width), pixels(facts.height)); !fits)
        return tl::unexpected(fits.error());
    return std::unique_ptr<PictureDecoder>(new HeifDecoder(std::move(facts), std::move(source)));
}

Result<void> HeifDecoder::decode(int /*reduction*/, RowSink& sink) const {
    const auto file = HeifFile::open(source);
    if (!file)
        return tl::unexpected(file.error());
    const auto image = (*file)->decode();
    if (!image)
        return tl::unexpected(image.error());
    int stride = 0;
    const std::uint8_t* plane =
        heif_image_get_plane_readonly(image->get(), heif_channel_interleaved, &stride);
    if (!plane || heif_image_get_width(image->get(), heif_channel_interleaved) != facts().width ||
        heif_image_get_height(image->get(), heif_channel_interleaved) != facts().height)
        return damaged("HEIF: the picture has not the size that its boxes tell");
    const auto channels = static_cast<std::size_t>(bitsPerPixel(facts().layout) / 8);
    const bool premultiplied = channels == 4 && heif_image_is_premultiplied_alpha(image->get());
    std::vector<std::byte> row(static_cast<std::size_t>(facts().width) * channels);
    for (int y = 0; y < facts().height; ++y) {
        putBgr({plane + static_cast<std::ptrdiff_t>(y) * stride, row.size()}, row, channels);
        if (premultiplied)
            unpremultiply(row);
        sink.putRow(row);
    }
    return {};
}

} // namespace GdiplusBackend
