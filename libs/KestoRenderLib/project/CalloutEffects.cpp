#include "KestoRenderLib/project/CalloutEffects.h"

#include "KestoRenderLib/BoxBlur.h"
#include "KestoRenderLib/project/Box.h"
#include "KestoRenderLib/project/PixelRows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace KestoRenderLib {

namespace {

unsigned char* pixelAt(const MetaBitmap& frame, const Rect& frameAt, int x, int y) {
    return frame.GetPixels() + static_cast<std::ptrdiff_t>(frame.GetStride()) * (y - frameAt.top) +
           static_cast<std::ptrdiff_t>(x - frameAt.left) * 4;
}

/// `part` of 255 of `over` and the rest of what was there. Premultiplied pixels stay valid.
void mix(unsigned char* pixel, const unsigned char* over, unsigned part) {
    for (int channel = 0; channel < 4; ++channel)
        pixel[channel] =
            static_cast<unsigned char>((over[channel] * part + pixel[channel] * (255 - part) + 127) / 255);
}

unsigned partOf(unsigned alpha, double opacity) {
    return static_cast<unsigned>(std::lround(alpha * opacity));
}

} // namespace

void blurThroughMask(MetaBitmap& shown, const Rect& shownAt, const MetaBitmap& mask, const Rect& area,
                     int radius, double opacity) {
    const Rect around = intersection(
        {area.left - radius, area.top - radius, area.right + radius, area.bottom + radius}, shownAt);
    const auto blurred = MetaBitmap::Create(sizeOf(around), PixelFormat::Premultiplied32);
    if (!blurred)
        return;
    copyInto(shown, *blurred, shownAt.left - around.left, shownAt.top - around.top);
    boxBlur({blurred->GetPixels(), blurred->GetStride(), blurred->GetWidth(), blurred->GetHeight(), 4},
            radius, BlurEdge::Repeated);
    for (int y = area.top; y < area.bottom; ++y)
        for (int x = area.left; x < area.right; ++x)
            mix(pixelAt(shown, shownAt, x, y), pixelAt(*blurred, around, x, y),
                partOf(pixelAt(mask, area, x, y)[3], opacity));
}

void coverAroundMask(MetaBitmap& shown, const Rect& shownAt, const MetaBitmap* mask, const Rect& area,
                     std::uint32_t argb, double opacity) {
    const std::array<unsigned char, 4> cover = {static_cast<unsigned char>(argb),
                                                static_cast<unsigned char>(argb >> 8),
                                                static_cast<unsigned char>(argb >> 16), 255};
    const double strength = (argb >> 24) / 255.0 * opacity;
    for (int y = shownAt.top; y < shownAt.bottom; ++y)
        for (int x = shownAt.left; x < shownAt.right; ++x) {
            const bool isMasked =
                mask && x >= area.left && x < area.right && y >= area.top && y < area.bottom;
            const unsigned open = isMasked ? pixelAt(*mask, area, x, y)[3] : 0U;
            mix(pixelAt(shown, shownAt, x, y), cover.data(), partOf(255 - open, strength));
        }
}

} // namespace KestoRenderLib
