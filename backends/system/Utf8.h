#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace SystemBackend {

constexpr char32_t replacementCharacter = 0xFFFD;

struct Utf8Character {
    char32_t value;     ///< `replacementCharacter` for bytes that are none
    std::size_t length; ///< bytes it takes
    bool valid;
};

/// The first character of `text`, which is not empty. Bytes that are none count as the longest run that could
/// have begun one (maximal subparts, The Unicode Standard, 3.9), and at least one byte.
Utf8Character decodeUtf8(std::string_view text);

struct Utf8Bytes {
    std::array<char, 4> bytes;
    std::size_t length;

    std::string_view view() const { return {bytes.data(), length}; }
};

/// A surrogate, or what lies beyond U+10FFFF, is encoded as U+FFFD.
Utf8Bytes encodeUtf8(char32_t character);

} // namespace SystemBackend
