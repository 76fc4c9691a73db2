#include "gdiplus/flat/FlatGuard.h"

#include "platform/GdiplusFlat.h"

#include <atomic>
#include <cstdlib>

namespace {

// A counter alone: starting up and shutting down protects no other data.
std::atomic<int> users = 0;

} // namespace

bool GdiplusBackend::isStarted() {
    return users.load(std::memory_order_relaxed) > 0;
}

namespace Gdiplus::DllExports {

GpStatus GdiplusStartup(ULONG_PTR* token, const GdiplusStartupInput* input, GdiplusStartupOutput* output) {
    if (!token || !input || (input->SuppressBackgroundThread && !output))
        return InvalidParameter;
    if (input->GdiplusVersion < 1 || input->GdiplusVersion > 2)
        return UnsupportedGdiplusVersion;
    *token = static_cast<ULONG_PTR>(users.fetch_add(1, std::memory_order_relaxed)) + 1;
    if (output)
        *output = {};
    return Ok;
}

VOID GdiplusShutdown(ULONG_PTR token) {
    int count = users.load(std::memory_order_relaxed);
    // One call too many must not eat up the next start-up.
    while (token != 0 && count > 0 &&
           !users.compare_exchange_weak(count, count - 1, std::memory_order_relaxed)) {
    }
}

VOID* GdipAlloc(std::size_t size) {
    return std::malloc(size);
}

VOID GdipFree(VOID* memory) {
    std::free(memory);
}

} // namespace Gdiplus::DllExports
