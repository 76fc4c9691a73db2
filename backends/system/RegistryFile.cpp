#include "system/RegistryFile.h"

#include "system/CaseFolding.h"
#include "system/OpenFile.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace SystemBackend {

namespace {

constexpr std::int64_t largestFile = 1 << 20; // no settings need more; it keeps a wrong file from being read

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// What stands between two brackets or quotes; none when they do not enclose the text.
std::optional<std::string_view> between(std::string_view text, char first, char last) {
    if (text.size() < 2 || text.front() != first || text.back() != last)
        return std::nullopt;
    return text.substr(1, text.size() - 2);
}

std::optional<std::uint32_t> numberOf(std::string_view text) {
    constexpr std::string_view mark = "dword:";
    constexpr std::size_t digits = 8;
    if (!text.starts_with(mark) || text.size() != mark.size() + digits)
        return std::nullopt;
    text.remove_prefix(mark.size());
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<RegistryValue> valueOf(std::string_view line) {
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos)
        return std::nullopt;
    const std::string name(trimmed(line.substr(0, sign)));
    const std::string_view content = trimmed(line.substr(sign + 1));
    if (name.empty())
        return std::nullopt;
    if (const auto number = numberOf(content))
        return RegistryValue{name, *number};
    if (const auto text = between(content, '"', '"'))
        return RegistryValue{name, std::string(*text)};
    return std::nullopt;
}

bool isComment(std::string_view line) {
    return line.starts_with(';') || line.starts_with('#');
}

std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return trimmed(line);
}

std::string environment(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody here sets variables
    return value ? value : "";
}

/// By the XDG Base Directory Specification, which lets only absolute paths count. Empty without any.
std::string configurationFolder() {
    std::string folder = environment("XDG_CONFIG_HOME");
    if (folder.starts_with('/'))
        return folder;
    folder = environment("HOME");
    return folder.starts_with('/') ? folder + "/.config" : std::string();
}

std::string readUserFile() {
    const std::string folder = configurationFolder();
    if (folder.empty())
        return {};
    const auto file = OpenFile::open(folder + "/kesto-thumbnailer/registry.ini");
    const auto size = file ? file->size() : std::nullopt;
    if (!size || *size > largestFile)
        return {};
    std::string text(static_cast<std::size_t>(*size), '\0');
    const auto count = file->read(std::as_writable_bytes(std::span(text)));
    text.resize(count.value_or(0));
    return text;
}

} // namespace

std::optional<RegistryValues> parseRegistryKey(std::string_view text, std::string_view key) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    std::optional<RegistryValues> values;
    bool inKey = false;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (isComment(line))
            continue;
        if (const auto section = between(line, '[', ']')) {
            inKey = equalIgnoringCase(*section, key);
            if (inKey && !values)
                values.emplace();
        } else if (auto value = inKey ? valueOf(line) : std::nullopt) {
            values->push_back(std::move(*value));
        }
    }
    return values;
}

std::optional<RegistryValues> readRegistryKey(std::string_view key) {
    return parseRegistryKey(readUserFile(), key);
}

const RegistryValue* findValue(const RegistryValues& values, std::string_view name) {
    const auto found = std::find_if(values.rbegin(), values.rend(), [name](const RegistryValue& value) {
        return equalIgnoringCase(value.name, name);
    });
    return found == values.rend() ? nullptr : &*found;
}

} // namespace SystemBackend
