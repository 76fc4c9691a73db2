#include "gdiplus/encoders/colorquantizer/NearestColor.h"

#include "gdiplus/encoders/PictureRows.h"

#include <algorithm>
#include <limits>

namespace GdiplusBackend {

namespace {
constexpr std::int16_t unknown = -1;
}

// Surplus entries repeat the first one: as later ones of equal distance they are never chosen.
NearestColor::NearestColor(std::span<const Gdiplus::ARGB> palette) {
    for (std::size_t entry = 0; entry < most; ++entry) {
        const Gdiplus::ARGB colour = palette[entry < palette.size() ? entry : 0];
        reds[entry] = redOf(colour);
        greens[entry] = greenOf(colour);
        blues[entry] = blueOf(colour);
    }
}

std::uint8_t NearestColor::indexFor(Gdiplus::ARGB colour) const {
    const std::int16_t red = redOf(colour);
    const std::int16_t green = greenOf(colour);
    const std::int16_t blue = blueOf(colour);
    // The index rides in the low byte of the distance, so that the search is one minimum without a branch.
    int best = std::numeric_limits<int>::max();
    for (std::size_t entry = 0; entry < most; ++entry) {
        // 16 bits, since multiplying those is what every processor does several at a time.
        const auto byRed = static_cast<std::int16_t>(reds[entry] - red);
        const auto byGreen = static_cast<std::int16_t>(greens[entry] - green);
        const auto byBlue = static_cast<std::int16_t>(blues[entry] - blue);
        const int distance = byRed * byRed + byGreen * byGreen + byBlue * byBlue;
        best = std::min(best, distance << 8 | static_cast<int>(entry));
    }
    return static_cast<std::uint8_t>(best);
}

RememberedNearestColor::RememberedNearestColor(std::span<const Gdiplus::ARGB> palette)
    : nearest(palette)
    , known(std::size_t{1} << 18, unknown) {}

std::uint8_t RememberedNearestColor::indexFor(int red, int green, int blue) {
    const int cube = red >> 2 << 12 | green >> 2 << 6 | blue >> 2;
    std::int16_t& index = known[static_cast<std::size_t>(cube)];
    if (index == unknown) {
        const auto middle = [](int level) { return static_cast<BYTE>((level & 0xFC) | 2); };
        index = nearest.indexFor(Gdiplus::Color::MakeARGB(255, middle(red), middle(green), middle(blue)));
    }
    return static_cast<std::uint8_t>(index);
}

} // namespace GdiplusBackend
