#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace SystemBackend {

struct RegistryValue {
    std::string name;
    std::variant<std::uint32_t, std::string> content;
};

using RegistryValues = std::vector<RegistryValue>;

/// The values of `key`, a path from its root on, in a text of the form that docs/registry-file.md tells. None
/// without such a key.
std::optional<RegistryValues> parseRegistryKey(std::string_view text, std::string_view key);

/// The same of the user's file, read anew; a file that is missing or can't be read has no keys.
std::optional<RegistryValues> readRegistryKey(std::string_view key);

/// The last one of that name, in any case; null without it.
const RegistryValue* findValue(const RegistryValues& values, std::string_view name);

} // namespace SystemBackend
