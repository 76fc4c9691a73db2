#pragma once

#include "platform/Export.h"

#include <string>

namespace Gdiplus {
class Bitmap;
}

namespace KestoThumbnailer {

/// Where finished bitmaps arrive that have a file to go to. Never destroyed through this interface.
class KESTO_EXPORT IThumbnailLoaderGdiplusBitmapCallbackForSavingtoFile {
public:
    /// `*bitmap` goes to the file `path` (UTF-8). Takes `*bitmap` by setting it to null, else it stays the
    /// caller's. Comes on a worker thread, where an exception ends the process.
    virtual void OnLoadedGdiPlusBitmapThumbnailForSavingToFile(Gdiplus::Bitmap** bitmap,
                                                               const std::string& path) = 0;

protected:
    ~IThumbnailLoaderGdiplusBitmapCallbackForSavingtoFile() = default;
};

} // namespace KestoThumbnailer
