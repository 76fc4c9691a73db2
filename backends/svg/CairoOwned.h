#pragma once

#include <cairo.h>

#include <memory>

namespace SvgBackend {

struct CairoDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
    void operator()(cairo_path_t* path) const { cairo_path_destroy(path); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};
template <class T>
using CairoOwned = std::unique_ptr<T, CairoDeleter>;

} // namespace SvgBackend
