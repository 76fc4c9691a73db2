#include "FrameCodecLib/FileName.h"

#include "platform/System.h"

namespace FrameCodecLib {

std::wstring wideOf(const std::string& fileName) {
    const int length = static_cast<int>(fileName.size());
    std::wstring wide(fileName.size(), L'\0'); // never more than there are bytes
    const int used = MultiByteToWideChar(CP_UTF8, 0, fileName.data(), length, wide.data(), length);
    wide.resize(static_cast<std::size_t>(used));
    return wide;
}

} // namespace FrameCodecLib
