#pragma once

#include "platform/Export.h"

#include <string>
#include <string_view>

namespace SystemBackend {

/// UTF-32 to UTF-8; what is not a character becomes U+FFFD. Null gives an empty text.
KESTO_EXPORT std::string toUtf8(const wchar_t* text);

/// The name under which `path` exists: as it stands, else with each backslash as a slash, else part by part
/// ignoring case (ASCII and simple Unicode folding): of each part the same name if there is one, else the
/// first alike in the order of bytes. Without any, `path` unchanged. Nothing is created. Any thread.
KESTO_EXPORT std::string resolvePath(std::string_view path);

/// Where a file of that name is written or removed: the resolved folder and the last part letter for letter,
/// so that `photo.JPG` never takes the place of `photo.jpg`. What exists as it stands (a link counts,
/// whatever it leads to) stays as it is. Without such a folder, `path` with slashes, so that a backslash
/// never becomes part of a new name. Any thread.
KESTO_EXPORT std::string resolvePathForWriting(std::string_view path);

} // namespace SystemBackend
