#pragma once

#include <string>

namespace KestoThumbnailer {

/// Whether the last part of `path` has a ".", and in `*extension` what follows the last one, in its own case;
/// empty without one. Parts end at a backslash alone: a forward slash is no separator.
bool ExtensionOf(const wchar_t* path, std::wstring* extension);

} // namespace KestoThumbnailer
