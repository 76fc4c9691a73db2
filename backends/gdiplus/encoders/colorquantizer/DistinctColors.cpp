#include "gdiplus/encoders/colorquantizer/DistinctColors.h"

#include "gdiplus/encoders/colorquantizer/OpaqueOrClear.h"

namespace GdiplusBackend {

std::optional<DistinctColors> DistinctColors::of(const ConstPixelView& picture) {
    DistinctColors colours;
    for (int y = 0; y < picture.height; ++y) {
        bool fits = true;
        std::optional<Gdiplus::ARGB> previous;
        visitRow(picture, y, [&](Gdiplus::ARGB colour) {
            if (colour == previous || !fits)
                return;
            previous = colour;
            fits = colours.add(colour);
        });
        if (!fits)
            return std::nullopt;
    }
    return colours;
}

std::uint8_t DistinctColors::indexOf(Gdiplus::ARGB colour) const {
    return static_cast<std::uint8_t>(slots[slotOf(colour)]);
}

bool DistinctColors::add(Gdiplus::ARGB colour) {
    std::int16_t& slot = slots[slotOf(colour)];
    if (slot != freeSlot)
        return true;
    if (found.size() == most)
        return false;
    slot = static_cast<std::int16_t>(found.size());
    found.push_back(colour);
    return true;
}

std::size_t DistinctColors::slotOf(Gdiplus::ARGB colour) const {
    std::size_t slot = (colour * 0x9E3779B1U >> 16) % slotCount;
    while (slots[slot] != freeSlot && found[static_cast<std::size_t>(slots[slot])] != colour)
        slot = (slot + 1) % slotCount;
    return slot;
}

} // namespace GdiplusBackend
