#include "batch/MemoryNeed.h"

#include "Paths.h"

#include <KestoThumbnailer/platform/Gdiplus.h>
#include <KestoThumbnailer/platform/System.h>

namespace KestoHost {

namespace {

constexpr std::int64_t bytesPerPixel = 4;

/// What a decoder of large video keeps in frames.
constexpr std::int64_t otherBytes = std::int64_t{128} << 20;

} // namespace

std::int64_t memoryNeedOf(const std::string& input) {
    const auto path = wideFromUtf8(input);
    if (!path || GetFileAttributesW(path->c_str()) == INVALID_FILE_ATTRIBUTES)
        return 0;
    Gdiplus::Bitmap picture(path->c_str());
    if (picture.GetLastStatus() != Gdiplus::Ok)
        return otherBytes;
    return std::int64_t{picture.GetWidth()} * picture.GetHeight() * bytesPerPixel;
}

} // namespace KestoHost
