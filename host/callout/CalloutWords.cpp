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
using Json = nlohmann::ordered_json;

const char* typeOf(const CalloutParam& param) {
    switch (param.type) {
    case CalloutParam::Type::Text:
    case CalloutParam::Type::Choice:
        return "text";
    case CalloutParam::Type::Flag:
        return "flag";
    case CalloutParam::Type::Number:
        return "number";
    case CalloutParam::Type::Count:
        return "count";
    case CalloutParam::Type::Color:
        return "color";
    case CalloutParam::Type::Path:
        return "path";
    }
    return "";
}

Json jsonOf(const CalloutParam& param) {
    Json object = {{"name", param.name}, {"type", typeOf(param)}};
    if (!param.choices.empty())
        object["choices"] = param.choices;
    if (param.type == CalloutParam::Type::Number || param.type == CalloutParam::Type::Count) {
        object["lowest"] = param.lowest;
        object["highest"] = param.highest;
    }
    return object;
}

std::size_t longestName() {
    std::size_t longest = 0;
    for (const CalloutParam& param : KestoMediaLib::calloutParams())
        longest = std::max(longest, param.name.size());
    return longest;
}

} // namespace

std::string valuesOf(const CalloutParam& param) {
    switch (param.type) {
    case CalloutParam::Type::Text:
        return "a text in UTF-8";
    case CalloutParam::Type::Choice:
        return fmt::format("one of {}", fmt::join(param.choices, ", "));
    case CalloutParam::Type::Flag:
        return "true or false";
    case CalloutParam::Type::Color:
        return "a colour like #rrggbb or #rrggbbaa";
    case CalloutParam::Type::Path:
        return "a path";
    case CalloutParam::Type::Number:
    case CalloutParam::Type::Count:
        break;
    }
    return fmt::format("a number from {} to {}", param.lowest, param.highest);
}

std::string listOfWords() {
    std::string text = fmt::format(
        "Kinds:  {}\nShapes: {}\nStyles: {}\nParameters:\n", fmt::join(KestoMediaLib::calloutKinds(), ", "),
        fmt::join(KestoMediaLib::calloutShapes(), ", "), fmt::join(KestoMediaLib::calloutStyles(), ", "));
    for (const CalloutParam& param : KestoMediaLib::calloutParams())
        text += fmt::format("  {:<{}}  {}\n", param.name, longestName(), valuesOf(param));
    return text;
}

std::string jsonOfWords() {
    Json params = Json::array();
    for (const CalloutParam& param : KestoMediaLib::calloutParams())
        params.push_back(jsonOf(param));
    const Json object = {{"kinds", KestoMediaLib::calloutKinds()},
                         {"shapes", KestoMediaLib::calloutShapes()},
                         {"styles", KestoMediaLib::calloutStyles()},
                         {"params", params}};
    return object.dump(2);
}

} // namespace KestoHost
