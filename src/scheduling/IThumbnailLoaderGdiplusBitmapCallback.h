#pragma once

#include "platform/Export.h"

namespace Gdiplus {
class Bitmap;
}

namespace KestoThumbnailer {

struct ThumbnailLoaderJob;

/// Where finished bitmaps arrive. Never destroyed through this interface.
class KESTO_EXPORT IThumbnailLoaderGdiplusBitmapCallback {
public:
    /// Takes `*bitmap` by setting it to null; what is left in it on return, the caller deletes. `job` is the
    /// request as it was run, for the length of the call. Comes on a worker thread, where an exception ends
    /// the process.
    virtual void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob& job) = 0;

protected:
    ~IThumbnailLoaderGdiplusBitmapCallback() = default;
};

} // namespace KestoThumbnailer
