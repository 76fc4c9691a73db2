#pragma once

#include "platform/WinTypes.h"

#include <string>

/// The class of the filter that reads what `path` names, by the text alone; `GUID_NULL` when that says
/// nothing. Any thread.
GUID SourceFilterClassForPath(const std::wstring& path);
