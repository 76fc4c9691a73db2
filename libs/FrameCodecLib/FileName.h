#pragma once

#include <string>

namespace FrameCodecLib {

/// A name in UTF-8 as the wide text that GDI+ and the GIF loader take.
std::wstring wideOf(const std::string& fileName);

} // namespace FrameCodecLib
