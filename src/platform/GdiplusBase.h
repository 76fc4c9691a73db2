#pragma once

#include "platform/GdiplusFlat.h"

namespace Gdiplus {

/// `new` of a derived class gives null when memory runs out. An object keeps the status of its last failed
/// call; one thread at a time for one object.
class GdiplusBase {
public:
    GdiplusBase(const GdiplusBase&) = delete;
    GdiplusBase& operator=(const GdiplusBase&) = delete;

    static void* operator new(std::size_t size) noexcept { return DllExports::GdipAlloc(size); }
    static void operator delete(void* memory) noexcept { DllExports::GdipFree(memory); }
    static void* operator new[](std::size_t size) noexcept { return DllExports::GdipAlloc(size); }
    static void operator delete[](void* memory) noexcept { DllExports::GdipFree(memory); }

    /// The status of the last failed call, or `Ok`; reading clears it.
    Status GetLastStatus() const {
        const Status status = lastResult;
        lastResult = Ok;
        return status;
    }

protected:
    GdiplusBase() = default;
    ~GdiplusBase() = default;

    Status SetStatus(Status status) const {
        if (status != Ok)
            lastResult = status;
        return status;
    }

    mutable Status lastResult = Ok;
};

} // namespace Gdiplus
