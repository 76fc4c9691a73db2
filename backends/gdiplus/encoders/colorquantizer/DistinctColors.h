#pragma once

#include "gdiplus/pixels/PixelView.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// The colours of a picture that has few, in the order of their first appearance from the top left.
class DistinctColors {
public:
    static constexpr std::size_t most = 256;

    /// Empty for a picture of more than `most` colours; all transparent pixels are one.
    static std::optional<DistinctColors> of(const ConstPixelView& picture);

    std::span<const Gdiplus::ARGB> colours() const { return found; }
    /// `colour` is one of `colours`.
    std::uint8_t indexOf(Gdiplus::ARGB colour) const;

private:
    static constexpr std::size_t slotCount = 4 * most;
    static constexpr std::int16_t freeSlot = -1;

    DistinctColors() { slots.fill(freeSlot); }
    bool add(Gdiplus::ARGB colour);
    std::size_t slotOf(Gdiplus::ARGB colour) const;

    std::array<std::int16_t, slotCount> slots; // indices into `found`, or `freeSlot`
    std::vector<Gdiplus::ARGB> found;
};

} // namespace GdiplusBackend
