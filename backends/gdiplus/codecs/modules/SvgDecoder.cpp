#include "gdiplus/codecs/modules/SvgDecoder.h"

#include "gdiplus/codecs/PixelBudget.h"
#include "gdiplus/codecs/StraightAlpha.h"

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <string_view>

namespace GdiplusBackend {

namespace {

constexpr std::uint64_t mostBytes = 64U << 20U;
constexpr double dotsPerInch = 96;
constexpr double defaultSide = 150;
constexpr double longestSide = 32767; // Cairo's image surfaces
constexpr std::array reductionsByDrawing = {2, 4, 8, 16, 32};

struct Deleter {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
template <typename T>
using Owned = std::unique_ptr<T, Deleter>;

struct Size {
    double width = 0;
    double height = 0;
};

/// Whether the text reaches the end tag of its root.
bool endsLikeSvg(std::span<const std::byte> bytes) {
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    text = text.substr(0, last == text.npos ? 0 : last + 1);
    return text.ends_with("svg>");
}

Result<Owned<RsvgHandle>> parse(const ByteSource& source) {
    const auto bytes = readAll(source, mostBytes);
    if (!bytes)
        return tl::unexpected(bytes.error());
    // Without a base, nothing but `data:` is ever resolved.
    GError* failure = nullptr;
    Owned<RsvgHandle> handle(
        rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(bytes->data()), bytes->size(), &failure));
    const Owned<GError> error(failure);
    if (!handle) {
        const std::string message = error ? error->message : "SVG";
        return endsLikeSvg(*bytes) ? damaged(message) : truncated(message);
    }
    rsvg_handle_set_dpi(handle.get(), dotsPerInch);
    return handle;
}

Size sizeOf(RsvgHandle* handle) {
    Size size;
    if (rsvg_handle_get_intrinsic_size_in_pixels(handle, &size.width, &size.height))
        return size;
    gboolean hasWidth = FALSE;
    gboolean hasHeight = FALSE;
    gboolean hasViewBox = FALSE;
    RsvgLength width = {};
    RsvgLength height = {};
    RsvgRectangle viewBox = {};
    rsvg_handle_get_intrinsic_dimensions(handle, &hasWidth, &width, &hasHeight, &height, &hasViewBox,
                                         &viewBox);
    size = hasViewBox ? Size{viewBox.width, viewBox.height} : Size{defaultSide, defaultSide};
    const double aspect = size.width / size.height;
    // One side alone keeps the view box's shape.
    if (hasWidth && width.unit == RSVG_UNIT_PX)
        return {width.length, hasViewBox ? width.length / aspect : size.height};
    if (hasHeight && height.unit == RSVG_UNIT_PX)
        return {hasViewBox ? height.length * aspect : size.width, height.length};
    return size;
}

Result<PictureFacts> factsOf(Size size) {
    if (!(size.width > 0 && size.height > 0) || !std::isfinite(size.width) || !std::isfinite(size.height))
        return damaged("SVG: a drawing needs a positive size");
    constexpr double countable = 1e9;
    const Size whole = {std::ceil(std::min(size.width, countable)),
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

Result<Owned<cairo_surface_t>> draw(RsvgHandle* handle, int width, int height) {
    Owned<cairo_surface_t> surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    if (cairo_surface_status(surface.get()) == CAIRO_STATUS_NO_MEMORY)
        throw std::bad_alloc();
    const Owned<cairo_t> context(cairo_create(surface.get()));
    const RsvgRectangle viewport = {0, 0, static_cast<double>(width), static_cast<double>(height)};
    GError* failure = nullptr;
    const gboolean drawn = rsvg_handle_render_document(handle, context.get(), &viewport, &failure);
    const Owned<GError> error(failure);
    if (!drawn)
        return damaged(error ? error->message : "SVG");
    cairo_surface_flush(surface.get());
    return surface;
}

} // namespace

SvgDecoder::SvgDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(std::move(facts))
    , source(std::move(bytes)) {}

Result<std::unique_ptr<PictureDecoder>> SvgDecoder::open(std::shared_ptr<const ByteSource> source) {
    const auto handle = parse(*source);
    if (!handle)
        return tl::unexpected(handle.error());
    auto facts = factsOf(sizeOf(handle->get()));
    if (!facts)
        return tl::unexpected(facts.error());
    return std::unique_ptr<PictureDecoder>(new SvgDecoder(std::move(*facts), std::move(source)));
}

Result<void> SvgDecoder::decode(int reduction, RowSink& sink) const {
    const auto handle = parse(*source);
    if (!handle)
        return tl::unexpected(handle.error());
    const int width = reducedLength(facts().width, reduction);
    const int height = reducedLength(facts().height, reduction);
    const auto surface = draw(handle->get(), width, height);
    if (!surface)
        return tl::unexpected(surface.error());
    const auto* pixels = reinterpret_cast<const std::byte*>(cairo_image_surface_get_data(surface->get()));
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface->get());
    std::vector<std::byte> row(static_cast<std::size_t>(width) * 4);
    for (int y = 0; y < height; ++y) {
        std::copy_n(pixels + y * stride, row.size(), row.begin());
        unpremultiply(row);
        sink.putRow(row);
    }
    return {};
}

} // namespace GdiplusBackend
