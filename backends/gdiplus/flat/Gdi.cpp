#include "platform/Gdi.h"

#include "gdiplus/codecs/PixelBudget.h"
#include "gdiplus/flat/DibMemory.h"
#include "gdiplus/flat/GdiHandle.h"
#include "platform/Threading.h"

#include <cstring>
#include <new>
#include <unordered_map>

using namespace GdiplusBackend;

namespace {

/// All handles that are alive, so that a stale one is told from a good one.
class LiveHandles {
public:
    HBITMAP add(std::unique_ptr<HBITMAP__> bitmap) {
        const MutexLock held(lock);
        HBITMAP handle = bitmap.get();
        bitmaps.emplace(handle, std::move(bitmap));
        return handle;
    }

    HBITMAP__* find(HGDIOBJ handle) {
        const MutexLock held(lock);
        const auto found = bitmaps.find(handle);
        return found == bitmaps.end() ? nullptr : found->second.get();
    }

    bool remove(HGDIOBJ handle) {
        const MutexLock held(lock);
        return bitmaps.erase(handle) > 0;
    }

private:
    Mutex lock;
    std::unordered_map<HGDIOBJ, std::unique_ptr<HBITMAP__>> bitmaps KESTO_GUARDED_BY(lock);
};

LiveHandles& liveHandles() {
    static LiveHandles handles;
    return handles;
}

std::unique_ptr<HBITMAP__> makeBitmap(const BITMAPINFO& info) {
    auto layout = layoutOf(info);
    if (!layout || !checkPixelBudget(static_cast<std::uint64_t>(layout->width),
                                     static_cast<std::uint64_t>(layout->height)))
        return nullptr;
    auto bitmap = std::make_unique<HBITMAP__>();
    bitmap->layout = std::move(*layout);
    bitmap->bits = std::make_unique<std::byte[]>(bitmap->layout.rowBytes *
                                                 static_cast<std::size_t>(bitmap->layout.height));
    return bitmap;
}

} // namespace

PixelView GdiplusBackend::pixelsOf(HBITMAP handle) {
    const HBITMAP__* bitmap = liveHandles().find(handle);
    return bitmap ? viewOf(bitmap->layout, bitmap->bits.get()) : PixelView();
}

HBITMAP CreateDIBSection(HANDLE device, const BITMAPINFO* info, UINT usage, VOID** bits, HANDLE section,
                         DWORD offset) {
    if (!info || device || section || offset != 0 || usage != DIB_RGB_COLORS)
        return nullptr;
    try {
        auto bitmap = makeBitmap(*info);
        if (!bitmap)
            return nullptr;
        if (bits)
            *bits = bitmap->bits.get();
        return liveHandles().add(std::move(bitmap));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

int GetObjectW(HGDIOBJ object, int size, LPVOID out) {
    const HBITMAP__* bitmap = liveHandles().find(object);
    if (!bitmap || !out || size < static_cast<int>(sizeof(BITMAP)))
        return 0;
    BITMAP told = {};
    told.bmWidth = bitmap->layout.width;
    told.bmHeight = bitmap->layout.height;
    told.bmWidthBytes = static_cast<LONG>(bitmap->layout.rowBytes);
    told.bmPlanes = 1;
    told.bmBitsPixel = static_cast<WORD>(GetPixelFormatSize(bitmap->layout.format));
    told.bmBits = bitmap->bits.get();
    std::memcpy(out, &told, sizeof told);
    return static_cast<int>(sizeof told);
}

BOOL DeleteObject(HGDIOBJ object) {
    return liveHandles().remove(object) ? TRUE : FALSE;
}
