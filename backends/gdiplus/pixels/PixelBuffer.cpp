#include "gdiplus/pixels/PixelBuffer.h"

#include "gdiplus/codecs/PixelBudget.h"

namespace GdiplusBackend {

Result<PixelBuffer> PixelBuffer::create(int width, int height, Gdiplus::PixelFormat format,
                                        std::vector<Gdiplus::ARGB> palette) {
    if (width < 1 || height < 1)
        return damaged("a picture needs a positive size");
    if (auto fits = checkPixelBudget(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height));
        !fits)
        return tl::unexpected(std::move(fits).error());
    PixelBuffer buffer;
    const std::size_t rowBytes = alignedStride(width, format);
    if (rowBytes > longestStride)
        return tooLarge("a row of the picture has 2^31 bytes or more");
    // calloc takes zero pages from the system, which costs nothing for rows that are overwritten at once.
    buffer.memory.reset(static_cast<std::byte*>(std::calloc(static_cast<std::size_t>(height), rowBytes)));
    if (!buffer.memory)
        return tooLarge("there is no memory for the picture");
    buffer.stride = static_cast<std::ptrdiff_t>(rowBytes);
    buffer.width = width;
    buffer.height = height;
    buffer.format = format;
    buffer.palette = std::move(palette);
    return buffer;
}

} // namespace GdiplusBackend
