#include "KestoMediaLib/projectfile/ValueReaders.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace KestoMediaLib::ProjectReading {

namespace {

constexpr std::size_t longestText = 1'000'000;
constexpr std::size_t longestPath = 4096;
constexpr std::ptrdiff_t mostDigits = 15;

template <class T>
bool reportsRange(const JsonPlace& place, const NumberRule& rule, const T& value, FirstError& errors) {
    if (value < rule.lowest)
        errors.expected(place, fmt::format("{} of at least {}", rule.meaning, rule.lowest));
    else if (value > rule.highest)
        errors.expected(place, fmt::format("{} of at most {}", rule.meaning, rule.highest));
    else
        return false;
    return true;
}

/// A whole number of few digits, all of the text.
std::optional<__int64> wholeOf(std::string_view text) {
    __int64 value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || stop - text.data() > mostDigits)
        return std::nullopt;
    return value;
}

std::optional<SafeRational> fractionOf(std::string_view text) {
    const std::size_t slash = text.find('/');
    const auto numerator = wholeOf(text.substr(0, slash));
    const auto denominator = slash == std::string_view::npos ? 1 : wholeOf(text.substr(slash + 1));
    if (!numerator || !denominator || *denominator < 1)
        return std::nullopt;
    return SafeRational(*numerator, *denominator);
}

std::optional<std::uint32_t> hexOf(std::string_view digits) {
    std::uint32_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    const bool isHex = error == std::errc() && stop == end && digits.front() != '-';
    return isHex ? std::optional(value) : std::nullopt;
}

bool isAbsolute(std::string_view path) {
    const bool hasDrive = path.size() > 1 && path[1] == ':';
    return path.starts_with('/') || path.starts_with('\\') || hasDrive;
}

} // namespace

double readNumber(const JsonPlace& place, const NumberRule& rule, FirstError& errors) {
    if (!place.value.is_number()) {
        errors.expected(place, rule.meaning);
        return rule.lowest;
    }
    const auto number = place.value.get<double>();
    return reportsRange(place, rule, number, errors) ? rule.lowest : number;
}

__int64 readWhole(const JsonPlace& place, const NumberRule& rule, FirstError& errors) {
    const double number = readNumber(place, rule, errors);
    if (number != std::floor(number))
        errors.expected(place, fmt::format("{}, a whole number", rule.meaning));
    return static_cast<__int64>(number);
}

bool readFlag(const JsonPlace& place, FirstError& errors) {
    if (place.value.is_boolean())
        return place.value.get<bool>();
    errors.expected(place, "true or false");
    return false;
}

std::string readText(const JsonPlace& place, FirstError& errors) {
    if (!place.value.is_string()) {
        errors.expected(place, "a text");
        return {};
    }
    const auto& text = place.value.get_ref<const std::string&>();
    if (text.size() <= longestText && text.find('\0') == std::string::npos)
        return text;
    errors.expected(place, fmt::format("a text of at most {} bytes without the character 0", longestText));
    return {};
}

std::string readChoice(const JsonPlace& place, std::span<const std::string_view> choices,
                       FirstError& errors) {
    if (place.value.is_string()) {
        const auto& text = place.value.get_ref<const std::string&>();
        if (std::find(choices.begin(), choices.end(), text) != choices.end())
            return text;
    }
    errors.expected(place, fmt::format("one of {}", fmt::join(choices, ", ")));
    return {};
}

ArgbColor readColor(const JsonPlace& place, FirstError& errors) {
    if (place.value.is_string()) {
        const std::string_view text = place.value.get_ref<const std::string&>();
        const bool hasAlpha = text.size() == 9;
        const bool mayBe = (text.size() == 7 || hasAlpha) && text.front() == '#';
        if (const auto digits = mayBe ? hexOf(text.substr(1)) : std::nullopt)
            return hasAlpha ? *digits >> 8U | *digits << 24U : *digits | 0xFF000000U;
    }
    errors.expected(place, "a colour like \"#rrggbb\" or \"#rrggbbaa\"");
    return 0;
}

SafeRational readRational(const JsonPlace& place, const NumberRule& rule, __int64 parts, FirstError& errors) {
    if (!place.value.is_string())
        return {std::llround(readNumber(place, rule, errors) * static_cast<double>(parts)), parts};
    const auto fraction = fractionOf(place.value.get_ref<const std::string&>());
    if (!fraction)
        errors.expected(place, fmt::format("{} as a number or a fraction like \"1001/30000\"", rule.meaning));
    else if (!reportsRange(place, rule, fraction->toDouble(), errors))
        return *fraction;
    return {std::llround(rule.lowest * static_cast<double>(parts)), parts};
}

__int64 readTime(const JsonPlace& place, FirstError& errors) {
    return RationalUtil::toKestoTime(readRational(place, secondsRule, modelTimePerSecond, errors));
}

std::string readPath(const JsonPlace& place, ReadContext& context) {
    std::string path = readText(place, context.errors);
    if (path.empty() || path.size() > longestPath)
        context.errors.expected(place, fmt::format("a path of 1 to {} bytes", longestPath));
    if (context.basePath.empty() || isAbsolute(path))
        return path;
    const bool separated = context.basePath.ends_with('/') || context.basePath.ends_with('\\');
    return context.basePath + (separated ? "" : "/") + path;
}

} // namespace KestoMediaLib::ProjectReading
