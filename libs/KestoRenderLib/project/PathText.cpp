#include "KestoRenderLib/project/PathText.h"

#include "platform/System.h"

#include <algorithm>
#include <limits>

namespace KestoRenderLib {

std::wstring widePath(const std::string& path) {
    if (path.empty() || path.size() > std::numeric_limits<int>::max())
        return {};
    const int length = static_cast<int>(path.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, path.data(), length, nullptr, 0)), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, path.data(), length, wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

bool hasExtension(std::string_view path, std::string_view extension) {
    const std::string_view name = path.substr(path.find_last_of("/\\") + 1);
    const std::size_t dot = name.rfind('.');
    const auto small = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    const auto sameLetter = [&](char one, char other) { return small(one) == other; };
    const std::string_view found = dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
    return std::equal(found.begin(), found.end(), extension.begin(), extension.end(), sameLetter);
}

} // namespace KestoRenderLib
