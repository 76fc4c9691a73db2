#pragma once

#include "platform/Gdiplus.h"

#include <string>

namespace KestoThumbnailer {

/// The still of a movie's last track of PNG files that lasts at `time`, in seconds of that track, with edit
/// lists left aside. The caller owns it; null where the movie can't be read or has no such still.
Gdiplus::Bitmap* GetThumbnailForPngTrack(const std::wstring& path, double time, int width, int height);

} // namespace KestoThumbnailer
