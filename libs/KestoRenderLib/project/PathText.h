#pragma once

#include <string>
#include <string_view>

namespace KestoRenderLib {

/// UTF-8 as the wide calls take it; empty for an empty path.
std::wstring widePath(const std::string& path);

/// Whether the path's last part ends in that extension, in ASCII letters of either case. `extension` has no
/// dot and small letters.
bool hasExtension(std::string_view path, std::string_view extension);

} // namespace KestoRenderLib
