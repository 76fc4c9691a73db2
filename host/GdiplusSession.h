#pragma once

#include <KestoThumbnailer/platform/Gdiplus.h>

namespace KestoHost {

/// GDI+ is started by the process, not by the library: as long as one of these lives, pictures can be made.
/// Throws `std::runtime_error` when it can't be started.
class GdiplusSession {
public:
    GdiplusSession();
    ~GdiplusSession();
    GdiplusSession(const GdiplusSession&) = delete;
    GdiplusSession& operator=(const GdiplusSession&) = delete;

private:
    ULONG_PTR token = 0;
};

} // namespace KestoHost
