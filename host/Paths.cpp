#include "Paths.h"

#include "LetterCase.h"

#include <KestoThumbnailer/platform/System.h>

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace KestoHost {

namespace {

/// Under any spelling that the library forgives.
bool isThere(const std::string& path) {
    return GetFileAttributesW(wideWithReplacements(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

} // namespace

std::wstring wideWithReplacements(const std::string& text) {
    const int length = static_cast<int>(text.size());
    const int units = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(units), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), units);
    return wide;
}

std::string utf8FromWide(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int units = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(units), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(), units, nullptr, nullptr);
    return utf8;
}

std::optional<std::wstring> wideFromUtf8(const std::string& path) {
    if (path.empty())
        return std::wstring();
    // Bytes that are not UTF-8 become replacement characters, and those do not turn back into the bytes.
    std::wstring wide = wideWithReplacements(path);
    if (utf8FromWide(wide) != path)
        return std::nullopt;
    return wide;
}

std::string forgivenName(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    std::error_code error; // the text as it is will do
    const std::filesystem::path whole = std::filesystem::absolute(path, error);
    const std::filesystem::path followed = std::filesystem::weakly_canonical(whole, error);
    return lowerCase(error ? path : followed.string());
}

bool isSameFile(const std::string& input, const std::string& output) {
    std::error_code error;
    if (std::filesystem::exists(input, error) && std::filesystem::exists(output, error))
        return std::filesystem::equivalent(input, output, error);
    return isThere(input) && forgivenName(input) == forgivenName(output);
}

std::string whyNotWritable(const std::string& output) {
    const std::filesystem::path path(output);
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    std::error_code error;
    const std::filesystem::file_status there = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(there))
        return "there is a folder of that name";
    if (std::filesystem::exists(there) && !std::filesystem::is_regular_file(there))
        return "there is a pipe or a device of that name";
    if (!std::filesystem::is_directory(folder, error))
        return fmt::format("there is no folder \"{}\"", folder.string());
    if (::access(folder.c_str(), W_OK | X_OK) != 0)
        return std::error_code(errno, std::generic_category()).message();
    return {};
}

} // namespace KestoHost
