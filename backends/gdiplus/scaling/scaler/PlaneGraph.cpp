#include "gdiplus/scaling/scaler/PlaneGraph.h"

#include <fmt/format.h>
#include <zimg.h>

#include <array>
#include <tuple>

namespace GdiplusBackend::Scaling {

namespace {

auto parts(const GraphKey& key) {
    return std::tuple(key.width, key.height, key.active.x, key.active.y, key.active.width, key.active.height,
                      key.targetWidth, key.targetHeight, key.kernel, key.opacity);
}

zimg_image_format planeFormat(int width, int height, Opacity opacity) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(width);
    format.height = static_cast<unsigned>(height);
    format.pixel_type = ZIMG_PIXEL_WORD;
    format.pixel_range = ZIMG_RANGE_FULL;
    format.color_family = ZIMG_COLOR_RGB;
    // Premultiplied on both sides: alpha is a fourth plane that is scaled like the others.
    format.alpha = opacity == Opacity::Transparent ? ZIMG_ALPHA_PREMULTIPLIED : ZIMG_ALPHA_NONE;
    return format;
}

zimg_graph_builder_params builderParameters(Kernel kernel) {
    zimg_graph_builder_params parameters;
    zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
    parameters.dither_type = ZIMG_DITHER_NONE;
    parameters.cpu_type = ZIMG_CPU_AUTO; // 3.0.4 gives wrong pixels with 64-byte instructions
    parameters.resample_filter = kernel == Kernel::Cubic ? ZIMG_RESIZE_BICUBIC : ZIMG_RESIZE_BILINEAR;
    if (kernel == Kernel::Cubic) {
        parameters.filter_param_a = 0;
        parameters.filter_param_b = 0.5; // Keys' a = -1/2 in the terms of Mitchell and Netravali (1988)
    }
    return parameters;
}

Result<GraphPtr> buildGraph(const GraphKey& key) {
    zimg_image_format from = planeFormat(key.width, key.height, key.opacity);
    from.active_region.left = key.active.x;
    from.active_region.top = key.active.y;
    from.active_region.width = key.active.width;
    from.active_region.height = key.active.height;
    const zimg_image_format to = planeFormat(key.targetWidth, key.targetHeight, key.opacity);
    const zimg_graph_builder_params parameters = builderParameters(key.kernel);
    GraphPtr graph(zimg_filter_graph_build(&from, &to, &parameters));
    if (!graph)
        return tl::unexpected(zimgError("planning"));
    return graph;
}

struct KeptGraph {
    GraphKey key;
    GraphPtr graph;
};

} // namespace

void GraphDeleter::operator()(zimg_filter_graph* graph) const {
    zimg_filter_graph_free(graph);
}

Result<const zimg_filter_graph*> graphFor(const GraphKey& key) {
    thread_local KeptGraph kept;
    if (!kept.graph || parts(kept.key) != parts(key)) {
        Result<GraphPtr> built = buildGraph(key);
        if (!built)
            return tl::unexpected(std::move(built.error()));
        kept = {key, std::move(*built)};
    }
    return kept.graph.get();
}

LoadError zimgError(const char* doing) {
    std::array<char, 256> text = {};
    const zimg_error_code_e code = zimg_get_last_error(text.data(), text.size());
    return {
        code == ZIMG_ERROR_OUT_OF_MEMORY ? Gdiplus::OutOfMemory : Gdiplus::GenericError,
        fmt::format("{} a scaled picture: {} (zimg error {})", doing, text.data(), static_cast<int>(code))};
}

} // namespace GdiplusBackend::Scaling
