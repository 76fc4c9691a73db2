#pragma once

#include <nlohmann/json_fwd.hpp>
#include <tl/expected.hpp>

#include <string>
#include <string_view>

namespace KestoMediaLib::ProjectReading {

struct JsonFault {
    std::string pointer; ///< empty where the text stops to be JSON
    std::string message;
};

/// What the text says. Refuses keys that stand twice, more than 64 levels, and more than a million values;
/// needs no more stack for deeper ones.
tl::expected<nlohmann::json, JsonFault> parseJson(std::string_view text);

/// `pointer` with one more reference token behind it (RFC 6901, 4).
std::string joinPointer(std::string pointer, std::string_view token);

} // namespace KestoMediaLib::ProjectReading
