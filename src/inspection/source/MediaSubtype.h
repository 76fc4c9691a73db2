#pragma once

#include "platform/WinTypes.h"

#include <string>

/// The stream subtype of a file by its first bytes, or else by its extension. `MEDIASUBTYPE_None` when
/// neither tells, for a `.mosk` file, and for a file that can't be read.
GUID MediaSubtypeForFile(const std::wstring& path);
