#pragma once

#include "gdiplus/pixels/PixelView.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// Finds the palette entry at the least Euclidean distance; the first of equal ones.
class NearestColor {
public:
    /// `palette` has 1 to 256 entries; it is copied.
    explicit NearestColor(std::span<const Gdiplus::ARGB> palette);

    std::uint8_t indexFor(Gdiplus::ARGB colour) const;

private:
    static constexpr std::size_t most = 256;

    std::array<std::int16_t, most> reds;
    std::array<std::int16_t, most> greens;
    std::array<std::int16_t, most> blues;
};

/// `NearestColor` with a memory: answers for cubes of 4 by 4 by 4 colours by their middle.
class RememberedNearestColor {
public:
    explicit RememberedNearestColor(std::span<const Gdiplus::ARGB> palette);

    /// Channels from 0 to 255.
    std::uint8_t indexFor(int red, int green, int blue);

private:
    NearestColor nearest;
    std::vector<std::int16_t> known; // by cube; `unknown` until asked for
};

} // namespace GdiplusBackend
