#include "gdiplus/flat/FlatGuard.h"

#include "platform/GdiplusFlat.h"

#include <algorithm>
#include <cstring>

using namespace GdiplusBackend;

namespace {

template <typename T, typename Ask>
Gdiplus::GpStatus answer(Gdiplus::GpImage* image, T* out, Ask ask) {
    if (!image || !out)
        return Gdiplus::InvalidParameter;
    *out = ask(bitmapOf(image));
    return Gdiplus::Ok;
}

std::size_t paletteBytes(const BitmapObject& bitmap) {
    const std::size_t entries = std::max<std::size_t>(1, bitmap.palette().size());
    return offsetof(Gdiplus::ColorPalette, Entries) + entries * sizeof(Gdiplus::ARGB);
}

const PropertyEntry* findProperty(BitmapObject& bitmap, PROPID id) {
    const auto& entries = bitmap.properties();
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [id](const PropertyEntry& entry) { return entry.id == id; });
    return found == entries.end() ? nullptr : &*found;
}

UINT sizeOf(const PropertyEntry& entry) {
    return static_cast<UINT>(sizeof(Gdiplus::PropertyItem) + entry.value.size());
}

} // namespace

namespace Gdiplus::DllExports {

GpStatus GdipDisposeImage(GpImage* image) {
    if (!image)
        return InvalidParameter;
    delete &bitmapOf(image);
    return Ok;
}

GpStatus GdipGetImageWidth(GpImage* image, UINT* width) {
    return answer(image, width, [](const BitmapObject& bitmap) { return static_cast<UINT>(bitmap.width()); });
}

GpStatus GdipGetImageHeight(GpImage* image, UINT* height) {
    return answer(image, height,
                  [](const BitmapObject& bitmap) { return static_cast<UINT>(bitmap.height()); });
}

GpStatus GdipGetImageHorizontalResolution(GpImage* image, REAL* dotsPerInch) {
    return answer(image, dotsPerInch, [](const BitmapObject& bitmap) { return bitmap.traits().dpiX; });
}

GpStatus GdipGetImageVerticalResolution(GpImage* image, REAL* dotsPerInch) {
    return answer(image, dotsPerInch, [](const BitmapObject& bitmap) { return bitmap.traits().dpiY; });
}

GpStatus GdipGetImageFlags(GpImage* image, UINT* flags) {
    return answer(image, flags, [](const BitmapObject& bitmap) { return bitmap.traits().flags; });
}

GpStatus GdipGetImageRawFormat(GpImage* image, GUID* format) {
    return answer(image, format, [](const BitmapObject& bitmap) { return bitmap.traits().rawFormat; });
}

GpStatus GdipGetImagePixelFormat(GpImage* image, PixelFormat* format) {
    return answer(image, format, [](const BitmapObject& bitmap) { return bitmap.traits().format; });
}

GpStatus GdipImageForceValidation(GpImage* image) {
    if (!image)
        return InvalidParameter;
    return flat([&] { return statusOf(bitmapOf(image).validate()); });
}

GpStatus GdipGetImagePaletteSize(GpImage* image, INT* size) {
    return answer(image, size,
                  [](const BitmapObject& bitmap) { return static_cast<INT>(paletteBytes(bitmap)); });
}

GpStatus GdipGetImagePalette(GpImage* image, ColorPalette* palette, INT size) {
    if (!image || !palette)
        return InvalidParameter;
    const BitmapObject& bitmap = bitmapOf(image);
    if (size < static_cast<INT>(paletteBytes(bitmap)))
        return InvalidParameter;
    const auto& colors = bitmap.palette();
    const bool hasAlpha =
        std::any_of(colors.begin(), colors.end(), [](ARGB color) { return color >> 24 != 255; });
    constexpr UINT PaletteFlagsHasAlpha = 1;
    palette->Flags = hasAlpha ? PaletteFlagsHasAlpha : 0;
    palette->Count = static_cast<UINT>(colors.size());
    std::copy(colors.begin(), colors.end(), palette->Entries);
    return Ok;
}

GpStatus GdipSetImagePalette(GpImage* image, const ColorPalette* palette) {
    if (!image || !palette || palette->Count == 0)
        return InvalidParameter;
    return flat([&] {
        BitmapObject& bitmap = bitmapOf(image);
        if (!IsIndexedPixelFormat(bitmap.traits().format))
            return InvalidParameter;
        return statusOf(bitmap.setPalette({palette->Entries, palette->Count}));
    });
}

GpStatus GdipImageRotateFlip(GpImage* image, RotateFlipType type) {
    if (!image || type < RotateNoneFlipNone || type > Rotate270FlipX)
        return InvalidParameter;
    return flat([&] {
        BitmapObject& bitmap = bitmapOf(image);
        return bitmap.lock() ? WrongState : statusOf(bitmap.turn(type));
    });
}

GpStatus GdipGetPropertyItemSize(GpImage* image, PROPID id, UINT* size) {
    if (!image || !size)
        return InvalidParameter;
    return flat([&] {
        const PropertyEntry* entry = findProperty(bitmapOf(image), id);
        if (!entry)
            return PropertyNotFound;
        *size = sizeOf(*entry);
        return Ok;
    });
}

GpStatus GdipGetPropertyItem(GpImage* image, PROPID id, UINT size, PropertyItem* item) {
    if (!image || !item)
        return InvalidParameter;
    return flat([&] {
        const PropertyEntry* entry = findProperty(bitmapOf(image), id);
        if (!entry)
            return PropertyNotFound;
        if (size != sizeOf(*entry))
            return InvalidParameter;
        item->id = id;
        item->type = entry->type;
        item->length = static_cast<ULONG>(entry->value.size());
        item->value = item + 1;
        if (!entry->value.empty())
            std::memcpy(item->value, entry->value.data(), entry->value.size());
        return Ok;
    });
}

} // namespace Gdiplus::DllExports
