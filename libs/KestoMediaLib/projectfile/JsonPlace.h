#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KestoMediaLib::ProjectReading {

/// A value within the document, and the way to it. Lives no longer than the place of the value around it.
struct JsonPlace {
    const nlohmann::json& value;
    const JsonPlace* around = nullptr; ///< null for the whole document
    std::string_view key = {};         ///< within an object
    std::size_t index = 0;             ///< within an array

    /// As of RFC 6901.
    std::string pointer() const;
};

/// The value in few words, for messages.
std::string described(const nlohmann::json& value);

/// Keeps what went wrong first.
class FirstError {
public:
    /// `expected` is what should stand at `place`; the message adds what does.
    void expected(const JsonPlace& place, std::string_view expected);
    void report(const JsonPlace& place, std::string text);

    bool any() const { return !message.empty(); }

    std::string pointer;
    std::string message;
};

/// The elements of an array; none, and an error, if there is no array.
std::vector<JsonPlace> elementsOf(const JsonPlace& array, FirstError& errors);

/// The members of an object, each asked for by its key.
class ObjectReader {
public:
    /// Reports if there is no object; every member is then absent.
    ObjectReader(const JsonPlace& place, FirstError& errors);

    std::optional<JsonPlace> optional(std::string_view key);
    /// Reports if it is absent.
    std::optional<JsonPlace> required(std::string_view key);

    /// Reports members that nobody asked for.
    void finish();

    const JsonPlace& place() const { return object; }

private:
    const JsonPlace& object;
    FirstError& errors;
    bool isObject;
    std::vector<std::string_view> asked;
};

} // namespace KestoMediaLib::ProjectReading
