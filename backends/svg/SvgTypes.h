#pragma once

#include <cairo.h>

#include <tl/expected.hpp>

#include <string>
#include <string_view>

namespace SvgBackend {

struct SvgError {
    enum class Kind {
        Damaged,
        TooMuch,      ///< takes too long, or more than librsvg can bear
        NotInstalled, ///< the program for documents that are not plain
        NoMemory,
    };
    Kind kind = Kind::Damaged;
    std::string message; ///< librsvg's own where it has one
};

template <class T>
using Result = tl::expected<T, SvgError>;

inline tl::unexpected<SvgError> damaged(std::string message) {
    return tl::unexpected(SvgError{SvgError::Kind::Damaged, std::move(message)});
}

/// In pixels at 96 dots per inch.
struct SvgSize {
    double width = 0;
    double height = 0;
};

struct SvgDocument {
    std::string_view text;
    std::string_view stylesheet = {}; ///< goes with it; may be empty
    /// What `text` was made of, where that is another document: it alone tells whether this one is plain, and
    /// all that is made of one that once took too long is refused.
    std::string_view origin = {};

    std::string_view original() const { return origin.empty() ? text : origin; }
};

struct SvgPlace {
    cairo_rectangle_t area = {};
    /// As large as fits into the middle. Else librsvg places it, which knows no shape but a view box's.
    bool isInTheMiddle = false;
    bool isKnownClear = false; ///< by Cairo, which rounds a little otherwise on such a surface
};

} // namespace SvgBackend
