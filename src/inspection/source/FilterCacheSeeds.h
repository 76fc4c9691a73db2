#pragma once

#include "platform/WinTypes.h"

#include <span>
#include <string>

/// The classes of the filters that a graph for `path` is to find in its filter cache, in the order in which
/// they are placed there. Any thread.
std::span<const CLSID> FilterCacheSeedsForPath(const std::wstring& path);
