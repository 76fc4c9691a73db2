#include "gdiplus/image/DefaultPalette.h"

#include <array>

namespace GdiplusBackend {

using Gdiplus::ARGB;

namespace {

constexpr std::array<ARGB, 16> displayColors = {
    0xFF000000, 0xFF800000, 0xFF008000, 0xFF808000, 0xFF000080, 0xFF800080, 0xFF008080, 0xFF808080,
    0xFFC0C0C0, 0xFFFF0000, 0xFF00FF00, 0xFFFFFF00, 0xFF0000FF, 0xFFFF00FF, 0xFF00FFFF, 0xFFFFFFFF,
};

std::vector<ARGB> cubePalette() {
    std::vector<ARGB> palette(displayColors.begin(), displayColors.end());
    palette.resize(40);
    constexpr ARGB step = 51;
    for (ARGB red = 0; red <= 255; red += step)
        for (ARGB green = 0; green <= 255; green += step)
            for (ARGB blue = 0; blue <= 255; blue += step)
                palette.push_back(0xFF000000 | red << 16 | green << 8 | blue);
    return palette;
}

} // namespace

std::vector<ARGB> defaultPalette(Gdiplus::PixelFormat format) {
    switch (format) {
    case PixelFormat1bppIndexed:
        return {0xFF000000, 0xFFFFFFFF};
    case PixelFormat4bppIndexed:
        return {displayColors.begin(), displayColors.end()};
    case PixelFormat8bppIndexed:
        return cubePalette();
    default:
        return {};
    }
}

} // namespace GdiplusBackend
