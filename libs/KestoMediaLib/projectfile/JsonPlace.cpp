#include "KestoMediaLib/projectfile/JsonPlace.h"

#include "KestoMediaLib/projectfile/JsonText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace KestoMediaLib::ProjectReading {

namespace {

using nlohmann::json;

constexpr std::size_t longestQuote = 60;

/// At most so much of a text that a message stays a line; never half a character.
std::string quoted(const std::string& text) {
    if (text.size() <= longestQuote)
        return json(text).dump();
    std::size_t end = longestQuote;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        --end;
    return json(text.substr(0, end) + "...").dump();
}

} // namespace

std::string JsonPlace::pointer() const {
    if (!around)
        return {};
    std::string outer = around->pointer();
    return joinPointer(std::move(outer), around->value.is_array() ? std::to_string(index) : std::string(key));
}

std::string described(const json& value) {
    if (value.is_object())
        return "an object";
    if (value.is_array())
        return value.empty() ? "an empty array" : "an array";
    return value.is_string() ? quoted(value.get_ref<const std::string&>()) : value.dump();
}

void FirstError::expected(const JsonPlace& place, std::string_view expected) {
    if (!any())
        report(place, fmt::format("expected {}, found {}", expected, described(place.value)));
}

void FirstError::report(const JsonPlace& place, std::string text) {
    if (any())
        return;
    pointer = place.pointer();
    message = std::move(text);
}

std::vector<JsonPlace> elementsOf(const JsonPlace& array, FirstError& errors) {
    std::vector<JsonPlace> elements;
    if (!array.value.is_array()) {
        errors.expected(array, "an array");
        return elements;
    }
    elements.reserve(array.value.size());
    for (std::size_t i = 0; i < array.value.size(); ++i)
        elements.push_back({array.value[i], &array, {}, i});
    return elements;
}

ObjectReader::ObjectReader(const JsonPlace& place, FirstError& sink)
    : object(place)
    , errors(sink)
    , isObject(place.value.is_object()) {
    if (!isObject)
        errors.expected(place, "an object");
}

std::optional<JsonPlace> ObjectReader::optional(std::string_view key) {
    asked.push_back(key);
    if (!isObject)
        return std::nullopt;
    const auto found = object.value.find(key);
    if (found == object.value.end())
        return std::nullopt;
    return JsonPlace{*found, &object, key};
}

std::optional<JsonPlace> ObjectReader::required(std::string_view key) {
    auto member = optional(key);
    if (!member && isObject)
        errors.report(object, fmt::format("expected a member \"{}\", found none", key));
    return member;
}

void ObjectReader::finish() {
    if (!isObject)
        return;
    for (const auto& [key, value] : object.value.items())
        if (std::find(asked.begin(), asked.end(), key) == asked.end()) {
            std::sort(asked.begin(), asked.end());
            errors.report({value, &object, key}, fmt::format("expected one of the members {}, found another",
                                                             fmt::join(asked, ", ")));
            return;
        }
}

} // namespace KestoMediaLib::ProjectReading
