#include "production/ImageOrientation.h"

#include "platform/UprightTurn.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

namespace KestoThumbnailer {

namespace {

constexpr UINT longestItem = 999998;

} // namespace

Gdiplus::RotateFlipType ReadOrientation(Gdiplus::Bitmap* bitmap) {
    if (!bitmap)
        return Gdiplus::RotateNoneFlipNone;
    const UINT size = bitmap->GetPropertyItemSize(PropertyTagOrientation);
    if (size < 1 || size > longestItem)
        return Gdiplus::RotateNoneFlipNone;

    const auto buffer =
        std::make_unique<std::byte[]>(std::max<std::size_t>(size, sizeof(Gdiplus::PropertyItem)));
    auto* item = reinterpret_cast<Gdiplus::PropertyItem*>(buffer.get());
    if (bitmap->GetPropertyItem(PropertyTagOrientation, size, item) != Gdiplus::Ok)
        return Gdiplus::RotateNoneFlipNone;

    std::uint16_t orientation = 0;
    if (item->length >= sizeof(orientation))
        std::memcpy(&orientation, item->value, sizeof(orientation));
    return Gdiplus::TurnOfOrientation(orientation);
}

} // namespace KestoThumbnailer
