#pragma once

#include "support/FrameNumber.h"

#include "platform/Gdiplus.h"

#include <optional>

namespace TestSupport {

/// The frame number that a bitmap shows; nothing when it can't be read back.
inline std::optional<int> shownNumber(Gdiplus::Bitmap& bitmap) {
    Gdiplus::BitmapData locked;
    if (bitmap.LockBits(nullptr, Gdiplus::ImageLockModeRead, PixelFormat32bppARGB, &locked) != Gdiplus::Ok)
        return std::nullopt;
    const auto number =
        FrameNumber::read(static_cast<const unsigned char*>(locked.Scan0), static_cast<int>(locked.Width),
                          static_cast<int>(locked.Height), locked.Stride);
    bitmap.UnlockBits(&locked);
    return number;
}

} // namespace TestSupport
