#include "storage/ElementName.h"

#include "storage/CompoundFormat.h"

#include <cwctype>

#include <locale.h>

namespace StorageBackend {

namespace {

constexpr bool isSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xE000;
}

/// Not that of the process, which may be any.
locale_t unicodeLocale() {
    static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

char16_t upperCase(char16_t unit) {
    if (unit < 0x80)
        return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - (u'a' - u'A')) : unit;
    const locale_t locale = unicodeLocale();
    if (isSurrogate(unit) || !locale)
        return unit;
    const std::wint_t upper = ::towupper_l(unit, locale);
    return upper <= 0xFFFF ? static_cast<char16_t>(upper) : unit;
}

} // namespace

std::optional<std::u16string> toElementName(std::wstring_view name) {
    if (name.empty() || name.size() > CompoundFormat::largestNameLength)
        return std::nullopt;
    std::u16string units;
    for (const wchar_t wide : name) {
        const auto character = static_cast<char32_t>(wide);
        if (character == 0 || character > 0x10FFFF)
            return std::nullopt;
        if (character > 0xFFFF) {
            units += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
        } else {
            units += static_cast<char16_t>(character);
        }
    }
    return units.size() > CompoundFormat::largestNameLength ? std::nullopt : std::optional(units);
}

std::wstring toWideName(std::u16string_view name) {
    std::wstring wide;
    for (std::size_t at = 0; at < name.size(); ++at) {
        char32_t character = name[at];
        const bool isPair = (character & 0xFC00) == 0xD800 && at + 1 < name.size() &&
                            (static_cast<char32_t>(name[at + 1]) & 0xFC00) == 0xDC00;
        if (isPair)
            character = 0x10000 + ((character & 0x3FF) << 10) + (static_cast<char32_t>(name[++at]) & 0x3FF);
        wide += static_cast<wchar_t>(character);
    }
    return wide;
}

bool isAllowedForNewElements(std::u16string_view name) {
    return name.find_first_of(u"/\\:!") == std::u16string_view::npos;
}

int compareNames(std::u16string_view left, std::u16string_view right) {
    if (left.size() != right.size())
        return left.size() < right.size() ? -1 : 1;
    for (std::size_t at = 0; at < left.size(); ++at) {
        const char16_t a = upperCase(left[at]);
        const char16_t b = upperCase(right[at]);
        if (a != b)
            return a < b ? -1 : 1;
    }
    return 0;
}

} // namespace StorageBackend
