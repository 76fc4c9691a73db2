#pragma once

#include "platform/WinTypes.h"

#include "gdiplus/flat/DibMemory.h"

#include <cstddef>
#include <memory>

/// The bitmap behind a handle, in memory of its own.
struct HBITMAP__ {
    GdiplusBackend::DibLayout layout;
    std::unique_ptr<std::byte[]> bits;
};

namespace GdiplusBackend {

/// The pixels of a live handle; a null `top` for anything else. Valid until the handle is deleted.
PixelView pixelsOf(HBITMAP handle);

} // namespace GdiplusBackend
