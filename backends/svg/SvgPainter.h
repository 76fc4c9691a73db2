#pragma once

#include "svg/SvgTypes.h"

namespace SvgBackend {

/// The document's own size, else that of its view box, else 150 by 150; any numbers that it holds. In this
/// process, however long that takes.
Result<SvgSize> measureHere(std::string_view text);

/// In this process, however long that takes. Nothing that the document refers to outside of itself is loaded.
Result<void> paintHere(cairo_t* context, const SvgDocument& document, const SvgPlace& place);

} // namespace SvgBackend
