#include "system/Utf8.h"

#include <algorithm>

namespace SystemBackend {

namespace {

/// What may follow a lead byte: how many bytes, and the range of the first of them, which shuts out overlong
/// forms, surrogates and values beyond U+10FFFF (The Unicode Standard, table 3-7).
struct Continuation {
    std::size_t count;
    unsigned char lowest;
    unsigned char highest;
};

Continuation continuationOf(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1, 0x80, 0xBF};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {2, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {3, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
    return {0, 0, 0};
}

} // namespace

Utf8Character decodeUtf8(std::string_view text) {
    const auto byteAt = [&text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80)
        return {lead, 1, true};
    auto [count, lowest, highest] = continuationOf(lead);
    if (count == 0)
        return {replacementCharacter, 1, false};
    char32_t value = lead & (0x3FU >> count);
    for (std::size_t index = 1; index <= count; ++index) {
        if (index >= text.size() || byteAt(index) < lowest || byteAt(index) > highest)
            return {replacementCharacter, index, false};
        value = value << 6 | (byteAt(index) & 0x3FU);
        lowest = 0x80;
        highest = 0xBF;
    }
    return {value, count + 1, true};
}

Utf8Bytes encodeUtf8(char32_t character) {
    if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF))
        character = replacementCharacter;
    if (character < 0x80)
        return {{static_cast<char>(character)}, 1};
    const std::size_t length = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
    Utf8Bytes encoded{{}, length};
    for (std::size_t index = length - 1; index > 0; --index) {
        encoded.bytes[index] = static_cast<char>(0x80U | (character & 0x3FU));
        character >>= 6;
    }
    encoded.bytes[0] = static_cast<char>((0xF00U >> length & 0xF0U) | character);
    return encoded;
}

} // namespace SystemBackend
