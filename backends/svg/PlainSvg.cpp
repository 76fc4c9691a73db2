#include "svg/PlainSvg.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace SvgBackend {

namespace {

using namespace std::string_view_literals;

/// The time that a path takes grows with the square of its length.
constexpr std::size_t longestDocument = 8192;
/// Each element may fill the whole picture, several times over.
constexpr double mostPixels = 1 << 19;
/// Lines of a width beyond all bounds take memory beyond all bounds for their round ends.
constexpr int mostDigits = 5;

constexpr std::array declarations = {""sv, "<?xml version=\"1.0\"?>"sv,
                                     "<?xml version=\"1.0\" encoding=\"utf-8\"?>"sv,
                                     "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\"?>"sv};

constexpr std::array names = {
    "svg"sv,      "g"sv,       "path"sv,  "rect"sv, "circle"sv,         "ellipse"sv,        "line"sv,
    "polyline"sv, "polygon"sv, "title"sv, "desc"sv, "lineargradient"sv, "radialgradient"sv, "stop"sv,
    "metadata"sv, "defs"sv};

/// What may take long, what makes numbers larger than they look, and what hides either.
constexpr std::array suspects = {"blend"sv, "filter"sv, "dash"sv, "font"sv, "scale"sv, "matrix"sv,
                                 "skew"sv,  ".00"sv,    "&"sv,    "\\"sv,   "<?"sv};

constexpr std::string_view blanks = " \t\r\n";

template <class Words>
bool contains(const Words& words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

/// From the root's tag on; empty when something else comes first.
std::string_view withoutDeclaration(std::string_view text) {
    const std::size_t end = text.starts_with("<?xml") ? text.find("?>") : text.npos;
    const std::size_t start = end == text.npos ? 0 : end + 2;
    if (!contains(declarations, text.substr(0, start)))
        return {};
    text.remove_prefix(start);
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.starts_with("<svg") || text.starts_with("<!--") ? text : std::string_view();
}

/// Skips digits and letters.
std::size_t endOfWord(std::string_view text, std::size_t at) {
    while (at < text.size() && (isDigit(text[at]) || (text[at] >= 'a' && text[at] <= 'z')))
        ++at;
    return at;
}

/// None with an exponent or with many digits before its point. A colour is no number.
bool hasModestNumbers(std::string_view text) {
    int digits = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '#') {
            at = endOfWord(text, at + 1) - 1;
            digits = 0;
            continue;
        }
        const char before = at > 0 ? text[at - 1] : ' ';
        const char after = at + 1 < text.size() ? text[at + 1] : ' ';
        if (c == 'e' && (isDigit(before) || before == '.') &&
            (isDigit(after) || after == '+' || after == '-'))
            return false;
        if (isDigit(c) && ++digits > mostDigits)
            return false;
        if (c == '.')
            digits = -static_cast<int>(longestDocument); // places after it do no harm
        else if (!isDigit(c))
            digits = 0;
    }
    return true;
}

/// None but those of outlines, fills and gradients, and one root.
bool hasPlainElements(std::string_view text) {
    int roots = 0;
    for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at)) {
        if (text.substr(at).starts_with("<!--")) {
            at = text.find("-->", at + 4);
            if (at == text.npos)
                return false;
            continue;
        }
        const bool opens = text.substr(at + 1, 1) != "/";
        const std::size_t start = at + (opens ? 1 : 2);
        const std::string_view name = text.substr(start, text.find_first_of(" \t\r\n/>", start) - start);
        roots += opens && name == "svg" ? 1 : 0;
        if (roots > 1 || !contains(names, name))
            return false;
        at = start;
    }
    return true;
}

} // namespace

bool isPlainSvg(std::string_view document, double pixels) {
    if (document.size() > longestDocument || pixels > mostPixels)
        return false;
    const std::string copy = lowered(document);
    const std::string_view text = withoutDeclaration(copy);
    return !text.empty() &&
           std::none_of(suspects.begin(), suspects.end(),
                        [&](std::string_view suspect) { return text.find(suspect) != text.npos; }) &&
           hasModestNumbers(text) && hasPlainElements(text);
}

} // namespace SvgBackend
