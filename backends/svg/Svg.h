#pragma once

#include "svg/SvgExchange.h"

namespace SvgBackend {

struct SvgPicture {
    std::optional<SvgExchange> memory; ///< of the surface, where it has none of its own
    CairoOwned<cairo_surface_t> surface;
};

// Documents that are surely quick and harmless are parsed and drawn in this process, all others by a program
// of their own, in bounded time and memory. Nothing that they refer to outside of themselves is loaded. Any
// thread.

/// The document's own size, else that of its view box, else 150 by 150; any numbers that it holds.
Result<SvgSize> measureSvg(std::string_view text);

/// The whole document on a picture of that size. Throws `std::bad_alloc`.
Result<SvgPicture> drawSvg(const SvgDocument& document, int width, int height);

/// As large as fits into `area`, in its middle. `context` draws on an image.
Result<void> paintSvg(cairo_t* context, const SvgDocument& document, const cairo_rectangle_t& area);

} // namespace SvgBackend
