#pragma once

#include "platform/Gdiplus.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Gdiplus {

/// What makes a picture upright whose orientation tag has that value (CIPA DC-008, Orientation); nothing for
/// a value that is not known. An addition of this library's own.
inline RotateFlipType TurnOfOrientation(std::uint16_t orientation) {
    constexpr std::array<RotateFlipType, 9> turns = {
        RotateNoneFlipNone, // 0 is no orientation
        RotateNoneFlipNone, RotateNoneFlipX,  Rotate180FlipNone, Rotate180FlipX,
        Rotate90FlipX,      Rotate90FlipNone, Rotate270FlipX,    Rotate270FlipNone,
    };
    return orientation < turns.size() ? turns[orientation] : RotateNoneFlipNone;
}

/// The same for the tag of a picture; nothing without one.
inline RotateFlipType UprightTurnOf(Bitmap& bitmap) {
    constexpr UINT longestItem = 64; // a tag of one number; a longer one is none
    const UINT size = bitmap.GetPropertyItemSize(PropertyTagOrientation);
    alignas(PropertyItem) std::array<std::byte, longestItem> buffer{};
    auto* item = reinterpret_cast<PropertyItem*>(buffer.data());
    if (size < sizeof(PropertyItem) || size > longestItem ||
        bitmap.GetPropertyItem(PropertyTagOrientation, size, item) != Ok)
        return RotateNoneFlipNone;
    std::uint16_t orientation = 0;
    if (item->length >= sizeof orientation)
        std::memcpy(&orientation, item->value, sizeof orientation);
    return TurnOfOrientation(orientation);
}

} // namespace Gdiplus
