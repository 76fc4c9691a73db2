#include "gdiplus/codecs/modules/SvgDecoder.h"

#include "gdiplus/codecs/PixelBudget.h"
#include "gdiplus/codecs/StraightAlpha.h"
#include "svg/Svg.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace GdiplusBackend {

namespace {

constexpr std::uint64_t mostBytes = 64U << 20U;
constexpr double longestSide = 32767; // Cairo's image surfaces
constexpr std::array reductionsByDrawing = {2, 4, 8, 16, 32};

using SvgBackend::SvgError;
using SvgBackend::SvgSize;

std::string_view textOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Whether the text reaches the end tag of its root.
bool endsLikeSvg(std::string_view text) {
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    text = text.substr(0, last == text.npos ? 0 : last + 1);
    return text.ends_with("svg>");
}

tl::unexpected<LoadError> failed(const SvgError& error) {
    switch (error.kind) {
    case SvgError::Kind::NotInstalled: // nothing is wrong with the file
        return tl::unexpected(LoadError{Gdiplus::GdiplusNotInitialized, error.message});
    case SvgError::Kind::NoMemory:
        return tooLarge(error.message);
    case SvgError::Kind::Damaged:
    case SvgError::Kind::TooMuch:
        break;
    }
    return damaged(error.message);
}

Result<SvgSize> measure(std::string_view text) {
    const auto size = SvgBackend::measureSvg(text);
    if (size)
        return *size;
    const bool isCut = size.error().kind == SvgError::Kind::Damaged && !endsLikeSvg(text);
    return isCut ? truncated(size.error().message) : failed(size.error());
}

Result<PictureFacts> factsOf(SvgSize size) {
    if (!(size.width > 0 && size.height > 0) || !std::isfinite(size.width) || !std::isfinite(size.height))
        return damaged("SVG: a drawing needs a positive size");
    constexpr double countable = 1e9;
    const SvgSize whole = {std::ceil(std::min(size.width, countable)),
                           std::ceil(std::min(size.height, countable))};
    if (const auto fits = checkPixelBudget(static_cast<std::uint64_t>(whole.width),
                                           static_cast<std::uint64_t>(whole.height));
        !fits)
        return tl::unexpected(fits.error());
    if (std::max(whole.width, whole.height) > longestSide)
        return tooLarge("SVG: a side is longer than 32767 pixels");
    PictureFacts facts;
    facts.width = static_cast<int>(whole.width);
    facts.height = static_cast<int>(whole.height);
    facts.layout = RowLayout::Bgra32;
    facts.flags = Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize |
                  Gdiplus::ImageFlagsColorSpaceRGB | Gdiplus::ImageFlagsHasAlpha;
    facts.reductions = reductionsByDrawing;
    return facts;
}

} // namespace

SvgDecoder::SvgDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(std::move(facts))
    , source(std::move(bytes)) {}

Result<std::unique_ptr<PictureDecoder>> SvgDecoder::open(std::shared_ptr<const ByteSource> source) {
    const auto bytes = readAll(*source, mostBytes);
    if (!bytes)
        return tl::unexpected(bytes.error());
    const auto size = measure(textOf(*bytes));
    if (!size)
        return tl::unexpected(size.error());
    auto facts = factsOf(*size);
    if (!facts)
        return tl::unexpected(facts.error());
    return std::unique_ptr<PictureDecoder>(new SvgDecoder(std::move(*facts), std::move(source)));
}

Result<void> SvgDecoder::decode(int reduction, RowSink& sink) const {
    const auto bytes = readAll(*source, mostBytes);
    if (!bytes)
        return tl::unexpected(bytes.error());
    const int width = reducedLength(facts().width, reduction);
    const int height = reducedLength(facts().height, reduction);
    const auto picture = SvgBackend::drawSvg({textOf(*bytes)}, width, height);
    if (!picture)
        return failed(picture.error());
    cairo_surface_t* const surface = picture->surface.get();
    const auto* pixels = reinterpret_cast<const std::byte*>(cairo_image_surface_get_data(surface));
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface);
    std::vector<std::byte> row(static_cast<std::size_t>(width) * 4);
    for (int y = 0; y < height; ++y) {
        std::copy_n(pixels + y * stride, row.size(), row.begin());
        unpremultiply(row);
        sink.putRow(row);
    }
    return {};
}

} // namespace GdiplusBackend
