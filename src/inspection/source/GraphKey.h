#pragma once

#include <string>

/// Under which key graphs for such paths are kept, in lower case: the extension, or `plumex!` with the
/// member's name; empty without any. Any thread.
std::wstring GraphKeyForPath(const std::wstring& path);
