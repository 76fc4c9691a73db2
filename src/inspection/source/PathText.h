#pragma once

#include <string_view>

/// What stands behind the last "." of `text`; empty without one.
inline std::wstring_view BehindLastDot(std::wstring_view text) {
    const std::size_t dot = text.rfind(L'.');
    return dot == std::wstring_view::npos ? std::wstring_view() : text.substr(dot + 1);
}
