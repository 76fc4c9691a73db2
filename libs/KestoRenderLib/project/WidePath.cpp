#include "KestoRenderLib/project/WidePath.h"

#include "platform/System.h"

#include <limits>

namespace KestoRenderLib {

std::wstring widePath(const std::string& path) {
    if (path.empty() || path.size() > std::numeric_limits<int>::max())
        return {};
    const int length = static_cast<int>(path.size());
    std::wstring wide(static_cast<std::size_t>(
                          MultiByteToWideChar(CP_UTF8, 0, path.data(), length, nullptr, 0)),
                      L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, path.data(), length, wide.data(),
                                                             static_cast<int>(wide.size()))));
    return wide;
}

} // namespace KestoRenderLib
