#pragma once

#include <string_view>

namespace SvgBackend {

/// Whether a document is sure to be drawn within a second on a picture of that many pixels: a short one of
/// outlines, fills and gradients alone. False for all that could take longer, and for much that would not.
bool isPlainSvg(std::string_view document, double pixels);

} // namespace SvgBackend
