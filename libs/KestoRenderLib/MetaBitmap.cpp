#include "platform/KestoRenderLib.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>

namespace KestoRenderLib {

namespace {

constexpr int bytesPerPixel = 4; // of every `PixelFormat` there is

/// Of one with memory of its own.
std::size_t bytesOf(const Size& size) {
    return std::size_t{bytesPerPixel} * static_cast<std::size_t>(size.width) *
           static_cast<std::size_t>(size.height);
}

/// Its pixels are not set yet. Empty for a size below 1 or without memory for it.
boost::shared_ptr<MetaBitmap> withoutContent(const Size& size, PixelFormat format) {
    if (size.width < 1 || size.height < 1 || size.width > std::numeric_limits<int>::max() / bytesPerPixel)
        return {};
    std::unique_ptr<unsigned char[]> memory(new (std::nothrow) unsigned char[bytesOf(size)]);
    if (!memory)
        return {};
    auto bitmap =
        boost::make_shared<MetaBitmap>(size, size.width * bytesPerPixel, format, memory.get(), true);
    memory.release(); // NOLINT(bugprone-unused-return-value): the bitmap has it
    return bitmap;
}

} // namespace

MetaBitmap::MetaBitmap(const KestoRenderLib::Size& sizeInPixels, int bytesPerRow, PixelFormat /*format*/,
                       unsigned char* memory, bool takeOwnership)
    : size(sizeInPixels)
    , stride(bytesPerRow)
    , pixels(memory)
    , ownsPixels(takeOwnership) {}

MetaBitmap::~MetaBitmap() {
    if (ownsPixels)
        delete[] pixels;
}

boost::shared_ptr<MetaBitmap> MetaBitmap::Create(const KestoRenderLib::Size& size, PixelFormat format) {
    auto bitmap = withoutContent(size, format);
    if (bitmap)
        std::fill_n(bitmap->GetPixels(), bytesOf(size), static_cast<unsigned char>(0));
    return bitmap;
}

boost::shared_ptr<MetaBitmap> MetaBitmap::CreateCopy() const {
    auto copy = withoutContent(size, PixelFormat::Premultiplied32);
    if (!copy)
        return {};
    for (int y = 0; y < size.height; ++y)
        std::copy_n(Row(y), copy->stride, copy->Row(y));
    return copy;
}

void MetaBitmap::FlipY() {
    const int bytesPerRow = size.width * bytesPerPixel;
    for (int top = 0, bottom = size.height - 1; top < bottom; ++top, --bottom)
        std::swap_ranges(Row(top), Row(top) + bytesPerRow, Row(bottom));
}

unsigned char* MetaBitmap::Row(int y) const {
    return pixels + static_cast<std::ptrdiff_t>(stride) * y;
}

boost::shared_ptr<Gdiplus::Bitmap> MetaBitmap::AsGdiplusBitmap() const {
    return boost::make_shared<Gdiplus::Bitmap>(size.width, size.height, stride, PixelFormat32bppPARGB,
                                               pixels);
}

} // namespace KestoRenderLib
