#include "platform/System.h"

#include "system/PathResolver.h"
#include "system/Utf8.h"
#include "system/WideBuffer.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <limits>
#include <optional>
#include <string_view>

namespace SystemBackend {

namespace {

constexpr int upToTerminator = -1;

/// A caller's buffer with the published rules: a length of 0 only counts, and text that does not fit is a
/// failure, told as 0.
template <class Unit>
class CountingBuffer {
public:
    CountingBuffer(Unit* out, int outLength)
        : units(outLength > 0 ? out : nullptr)
        , limit(outLength > 0 ? static_cast<std::size_t>(outLength) : std::numeric_limits<int>::max()) {}

    void append(std::basic_string_view<Unit> text) {
        fits = fits && text.size() <= limit - count;
        if (!fits)
            return;
        if (units)
            std::copy(text.begin(), text.end(), units + count);
        count += text.size();
    }

    int result() const { return fits ? static_cast<int>(count) : 0; }

private:
    Unit* units;
    std::size_t limit;
    std::size_t count = 0;
    bool fits = true;
};

/// What a caller handed in, with its terminator where that is asked for; none when the arguments are unknown.
template <class Unit, class OutUnit>
std::optional<std::basic_string_view<Unit>> publishedInput(UINT codePage, DWORD flags, const Unit* text,
                                                           int length, const OutUnit* out, int outLength) {
    if (codePage != CP_UTF8 || flags != 0 || !text || length == 0 || length < upToTerminator)
        return std::nullopt;
    if (outLength < 0 || (outLength > 0 && !out))
        return std::nullopt;
    const std::size_t size = length == upToTerminator ? std::char_traits<Unit>::length(text) + 1
                                                      : static_cast<std::size_t>(length);
    return std::basic_string_view<Unit>(text, size);
}

template <class Sink>
void decodeInto(Sink& sink, std::string_view text) {
    while (!text.empty()) {
        const Utf8Character next = decodeUtf8(text);
        const auto unit = static_cast<wchar_t>(next.value);
        sink.append({&unit, 1});
        text.remove_prefix(next.length);
    }
}

} // namespace

std::string toUtf8(const wchar_t* text) {
    std::string converted;
    for (; text && *text; ++text)
        converted += encodeUtf8(static_cast<char32_t>(*text)).view();
    return converted;
}

std::wstring toWide(std::string_view text) {
    std::wstring converted;
    converted.reserve(text.size());
    decodeInto(converted, text);
    return converted;
}

void copyWithTerminator(std::wstring_view text, wchar_t* buffer) {
    *std::copy(text.begin(), text.end(), buffer) = L'\0';
}

} // namespace SystemBackend

extern "C" {

int MultiByteToWideChar(UINT codePage, DWORD flags, const CHAR* text, int length, WCHAR* out, int outLength) {
    const auto input = SystemBackend::publishedInput(codePage, flags, text, length, out, outLength);
    if (!input)
        return 0;
    SystemBackend::CountingBuffer<WCHAR> units(out, outLength);
    SystemBackend::decodeInto(units, *input);
    return units.result();
}

int WideCharToMultiByte(UINT codePage, DWORD flags, const WCHAR* text, int length, CHAR* out, int outLength,
                        const CHAR* defaultChar, BOOL* usedDefaultChar) {
    const auto input = SystemBackend::publishedInput(codePage, flags, text, length, out, outLength);
    // A stand-in of the caller's own for what a code page lacks means nothing for UTF-8, and is refused.
    if (!input || defaultChar || usedDefaultChar)
        return 0;
    SystemBackend::CountingBuffer<CHAR> units(out, outLength);
    for (const WCHAR character : *input)
        units.append(SystemBackend::encodeUtf8(static_cast<char32_t>(character)).view());
    return units.result();
}

} // extern "C"
