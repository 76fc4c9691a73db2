#include "callout/CalloutArguments.h"

#include "Paths.h"
#include "callout/CalloutWords.h"

#include <KestoThumbnailer/platform/KestoMediaCalloutWords.h>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <span>

namespace KestoHost {

namespace {

using KestoMediaLib::CalloutParam;
using Json = nlohmann::json;

constexpr int longestNatural = 16384;
constexpr double largestScale = 1000;

std::string checkWord(const std::string& text, std::span<const std::string_view> known) {
    if (std::find(known.begin(), known.end(), text) != known.end())
        return {};
    return fmt::format("expected one of {}, found \"{}\"", fmt::join(known, ", "), text);
}

const CalloutParam* paramNamed(std::string_view name) {
    const auto params = KestoMediaLib::calloutParams();
    const auto found = std::find_if(params.begin(), params.end(),
                                    [name](const CalloutParam& param) { return param.name == name; });
    return found == params.end() ? nullptr : &*found;
}

/// Discarded for a text that is no JSON.
Json parsedJson(const std::string& text) {
    return Json::parse(text, nullptr, /*allow_exceptions=*/false);
}

std::optional<Json> numberOf(const std::string& text) {
    Json number = parsedJson(text);
    return number.is_number() ? std::optional(std::move(number)) : std::nullopt;
}

std::optional<Json> valueOf(const CalloutParam& param, const std::string& text) {
    switch (param.type) {
    case CalloutParam::Type::Text:
    case CalloutParam::Type::Choice:
    case CalloutParam::Type::Color:
    case CalloutParam::Type::Path:
        return wideFromUtf8(text) ? std::optional<Json>(text) : std::nullopt;
    case CalloutParam::Type::Flag:
        return text == "true" || text == "false" ? std::optional<Json>(text == "true") : std::nullopt;
    case CalloutParam::Type::Number:
    case CalloutParam::Type::Count:
        break;
    }
    return numberOf(text);
}

std::string_view nameIn(std::string_view text) {
    return text.substr(0, text.find('='));
}

std::vector<std::string_view> paramNames() {
    std::vector<std::string_view> names;
    for (const CalloutParam& param : KestoMediaLib::calloutParams())
        names.push_back(param.name);
    return names;
}

} // namespace

std::optional<CalloutScale> parseScale(const std::string& text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos)
        return std::nullopt;
    const auto horizontal = parseSeconds(text.substr(0, comma));
    const auto vertical = parseSeconds(text.substr(comma + 1));
    const auto isScale = [](const std::optional<double>& factor) {
        return factor && *factor > 0 && *factor <= largestScale;
    };
    if (!isScale(horizontal) || !isScale(vertical))
        return std::nullopt;
    return CalloutScale{*horizontal, *vertical};
}

std::optional<CalloutEdge> parseEdge(const std::string& text) {
    const std::size_t sign = text.rfind('=');
    if (sign == std::string::npos || sign == 0 || !wideFromUtf8(text))
        return std::nullopt;
    const auto seconds = parseSeconds(text.substr(sign + 1));
    return seconds ? std::optional(CalloutEdge{text.substr(0, sign), *seconds}) : std::nullopt;
}

std::optional<std::pair<std::string, Json>> parseParam(const std::string& text) {
    const std::string_view name = nameIn(text);
    const CalloutParam* param = paramNamed(name);
    if (!param || name.size() == text.size())
        return std::nullopt;
    auto value = valueOf(*param, text.substr(name.size() + 1));
    return value ? std::optional(std::pair(std::string(name), std::move(*value))) : std::nullopt;
}

std::string checkKind(const std::string& text) {
    return checkWord(text, KestoMediaLib::calloutKinds());
}

std::string checkShape(const std::string& text) {
    return checkWord(text, KestoMediaLib::calloutShapes());
}

std::string checkCalloutStyle(const std::string& text) {
    return checkWord(text, KestoMediaLib::calloutStyles());
}

std::string checkNaturalSize(const std::string& text) {
    const auto size = parseBounds(text);
    const auto isLength = [](int length) { return length >= 1 && length <= longestNatural; };
    if (size && isLength(size->width) && isLength(size->height))
        return {};
    return fmt::format("expected WIDTHxHEIGHT in pixels, each 1 to {}, found \"{}\"", longestNatural, text);
}

std::string checkScale(const std::string& text) {
    if (parseScale(text))
        return {};
    return fmt::format("expected X,Y, two numbers above 0 and at most {}, found \"{}\"", largestScale, text);
}

std::string checkEdge(const std::string& text) {
    if (parseEdge(text))
        return {};
    return fmt::format("expected NAME=SECONDS, found \"{}\"", text);
}

std::string checkParam(const std::string& text) {
    if (parseParam(text))
        return {};
    const std::string_view name = nameIn(text);
    if (name.size() == text.size())
        return fmt::format("expected NAME=VALUE, found \"{}\"", text);
    const CalloutParam* param = paramNamed(name);
    if (!param)
        return fmt::format("expected a name of {}, found \"{}\"", fmt::join(paramNames(), ", "), name);
    return fmt::format("expected {} for {}, found \"{}\"", valuesOf(*param), name,
                       text.substr(name.size() + 1));
}

std::string checkParams(const std::string& text) {
    if (parsedJson(text).is_object())
        return {};
    return fmt::format("expected a JSON object, found \"{}\"", text);
}

std::string checkUtf8(const std::string& text) {
    return wideFromUtf8(text) ? "" : "expected a text that is valid UTF-8";
}

} // namespace KestoHost
