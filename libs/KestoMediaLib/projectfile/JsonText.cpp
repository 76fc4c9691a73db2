#include "KestoMediaLib/projectfile/JsonText.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace KestoMediaLib::ProjectReading {

namespace {

using nlohmann::json;

constexpr std::size_t deepest = 64;
constexpr std::size_t mostValues = 1'000'000;

std::string lineAndColumn(std::string_view text, std::size_t position) {
    const std::string_view before = text.substr(0, std::min(position, text.size()));
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    return fmt::format("line {}, column {}", lines + 1, before.size() - lineStart);
}

/// The part for people of the parser's message.
std::string_view reasonOf(std::string_view what) {
    const std::size_t colon = what.find(": ");
    return colon == std::string_view::npos ? what : what.substr(colon + 2);
}

/// Builds a document from the parser's events, and stops it where a limit is passed.
class Builder final : public nlohmann::json_sax<json> {
public:
    explicit Builder(std::string_view parsed)
        : text(parsed) {}

    bool null() override { return add(json()); }
    bool boolean(bool value) override { return add(json(value)); }
    bool number_integer(json::number_integer_t value) override { return add(json(value)); }
    bool number_unsigned(json::number_unsigned_t value) override { return add(json(value)); }
    bool number_float(json::number_float_t value, const std::string&) override { return add(json(value)); }
    bool string(std::string& value) override { return add(json(std::move(value))); }
    bool binary(json::binary_t&) override { return fail("binary values are not JSON"); }
    bool start_object(std::size_t) override { return open(json::object()); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_array() override { return close(); }

    bool key(std::string& name) override {
        nextKey = name;
        return !levels.back()->contains(name) || fail("expected each key once, found it twice");
    }

    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::detail::exception& error) override {
        fault.message =
            fmt::format("expected JSON; {}: {}", lineAndColumn(text, position), reasonOf(error.what()));
        return false;
    }

    json root;
    JsonFault fault;

private:
    bool fail(std::string message) {
        fault = {pointerToNext(), std::move(message)};
        return false;
    }

    std::string pointerToNext() const {
        std::string pointer;
        for (std::size_t i = 0; i < levels.size(); ++i)
            pointer = joinPointer(std::move(pointer), tokenIn(i));
        return pointer;
    }

    std::string tokenIn(std::size_t level) const {
        if (levels[level]->is_object())
            return level + 1 < levels.size() ? keys[level + 1] : nextKey;
        const std::size_t count = levels[level]->size();
        return std::to_string(level + 1 < levels.size() ? count - 1 : count);
    }

    json* place(json value) {
        if (levels.empty()) {
            root = std::move(value);
            return &root;
        }
        json& parent = *levels.back();
        if (parent.is_array())
            return &parent.emplace_back(std::move(value));
        return &(parent[nextKey] = std::move(value));
    }

    bool add(json value) {
        if (++values > mostValues)
            return fail(fmt::format("expected at most {} values", mostValues));
        place(std::move(value));
        return true;
    }

    bool open(json container) {
        if (levels.size() == deepest)
            return fail(fmt::format("expected at most {} levels of brackets", deepest));
        if (++values > mostValues)
            return fail(fmt::format("expected at most {} values", mostValues));
        keys.push_back(nextKey);
        levels.push_back(place(std::move(container)));
        return true;
    }

    bool close() {
        levels.pop_back();
        keys.pop_back();
        return true;
    }

    std::string_view text;
    std::vector<json*> levels;
    std::vector<std::string> keys; ///< of each level within the one before it, where that is an object
    std::string nextKey;
    std::size_t values = 0;
};

} // namespace

tl::expected<json, JsonFault> parseJson(std::string_view text) {
    Builder builder(text);
    if (json::sax_parse(text.begin(), text.end(), &builder))
        return std::move(builder.root);
    return tl::unexpected(std::move(builder.fault));
}

std::string joinPointer(std::string pointer, std::string_view token) {
    pointer += '/';
    for (const char c : token) {
        if (c == '~')
            pointer += "~0";
        else if (c == '/')
            pointer += "~1";
        else
            pointer += c;
    }
    return pointer;
}

} // namespace KestoMediaLib::ProjectReading
