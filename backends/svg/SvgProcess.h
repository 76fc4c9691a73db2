#pragma once

#include "svg/SvgExchange.h"

namespace SvgBackend {

/// Has the program `kesto-svg`, which lies beside this module, do what `measureHere` and `paintHere` do. It
/// is ended when it takes longer than 10 seconds, or what KESTO_SVG_TIME_LIMIT_MS says. A document for which
/// that has happened before, or at which the program has died, is refused. Any thread.
Result<SvgSize> measureApart(std::string_view text);

/// On a transparent picture of that size. Gives the memory that it lies in.
Result<SvgExchange> drawApart(const SvgDocument& document, const SvgPlace& place,
                              const cairo_matrix_t& matrix, int width, int height);

} // namespace SvgBackend
