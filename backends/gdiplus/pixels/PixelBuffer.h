#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/pixels/PixelView.h"

#include <cstdlib>
#include <memory>
#include <vector>

namespace GdiplusBackend {

/// A picture in memory of its own: rows from the top, `alignedStride` apart, all zero at first.
class PixelBuffer {
public:
    PixelBuffer() = default;

    /// `OutOfMemory` over the pixel budget or without memory; `GenericError` for a size below 1.
    static Result<PixelBuffer> create(int width, int height, Gdiplus::PixelFormat format,
                                      std::vector<Gdiplus::ARGB> palette = {});

    PixelView view() const { return {memory.get(), stride, width, height, format, palette}; }
    explicit operator bool() const { return memory != nullptr; }

private:
    struct Free {
        void operator()(std::byte* bytes) const { std::free(bytes); }
    };

    std::unique_ptr<std::byte, Free> memory;
    std::ptrdiff_t stride = 0;
    int width = 0;
    int height = 0;
    Gdiplus::PixelFormat format = 0;
    std::vector<Gdiplus::ARGB> palette;
};

} // namespace GdiplusBackend
