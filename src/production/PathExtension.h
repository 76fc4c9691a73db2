#pragma once

#include <string>

namespace KestoThumbnailer {

/// Whether the last part of `path` has a ".", and in `*extension` what follows the last one, in its own case;
/// empty without one. Parts end at a backslash alone: a forward slash is no separator.
bool ExtensionOf(const wchar_t* path, std::wstring* extension);

/// The same in lower case; empty without one.
std::wstring LowerExtensionOf(const std::wstring& path);

} // namespace KestoThumbnailer
