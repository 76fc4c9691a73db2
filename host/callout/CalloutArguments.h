#pragma once

#include "callout/CalloutRequest.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <utility>

namespace KestoHost {

/// Reads "X,Y", two numbers above 0 and at most 1000.
std::optional<CalloutScale> parseScale(const std::string& text);

/// Reads "NAME=SECONDS".
std::optional<CalloutEdge> parseEdge(const std::string& text);

/// Reads "NAME=VALUE", with the value of the type that a parameter of that name has. Nothing for another
/// name, and for a text that is no value of that type; whether it is in range is not looked at.
std::optional<std::pair<std::string, nlohmann::json>> parseParam(const std::string& text);

/// What is wrong with the value of an option, as CLI11 wants it: empty when nothing is.
std::string checkKind(const std::string& text);
std::string checkShape(const std::string& text);
std::string checkCalloutStyle(const std::string& text);
std::string checkNaturalSize(const std::string& text);
std::string checkScale(const std::string& text);
std::string checkEdge(const std::string& text);
std::string checkParam(const std::string& text);
std::string checkParams(const std::string& text);
std::string checkUtf8(const std::string& text);

} // namespace KestoHost
