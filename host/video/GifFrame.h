#pragma once

#include "Arguments.h"
#include "Report.h"

#include <KestoThumbnailer/platform/Gdiplus.h>

#include <memory>
#include <string>

namespace KestoHost {

/// Whether a file is a GIF with several frames, whatever its name's extension. `input` is valid UTF-8.
bool isAnimatedGif(const std::string& input);

struct GifThumbnail {
    std::unique_ptr<Gdiplus::Bitmap> bitmap; ///< null: nothing can be shown
    DeliveredFrame told;                     ///< its time is that of the first pass
};

/// What the library shows of a GIF at a time, and which frame that is.
GifThumbnail gifThumbnail(const std::string& input, double seconds, const Bounds& bounds);

} // namespace KestoHost
