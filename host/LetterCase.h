#pragma once

#include <algorithm>
#include <string>

namespace KestoHost {

/// ASCII letters in lower case, every other byte as it is.
inline std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

} // namespace KestoHost
