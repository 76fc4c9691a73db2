#include "GdiplusSession.h"

#include <stdexcept>

namespace KestoHost {

GdiplusSession::GdiplusSession() {
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok)
        throw std::runtime_error("the imaging library can't be started");
}

GdiplusSession::~GdiplusSession() {
    Gdiplus::GdiplusShutdown(token);
}

} // namespace KestoHost
