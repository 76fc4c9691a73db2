#pragma once

#include <string>

namespace KestoRenderLib {

/// UTF-8 as the wide calls take it; empty for an empty path.
std::wstring widePath(const std::string& path);

} // namespace KestoRenderLib
