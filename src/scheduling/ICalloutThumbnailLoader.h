#pragma once

#include "platform/Export.h"
#include "platform/KestoMediaLib.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace Gdiplus {
class Bitmap;
}

namespace KestoThumbnailer {

/// Takes `*bitmap` by setting it to null; what is left in it on return is deleted. The texts are those of the
/// request, for the length of the call. Comes on a worker thread, where an exception ends the process.
using CalloutThumbnailCallback = void(const std::string& thumbnailKey, Gdiplus::Bitmap** bitmap,
                                      const std::string& userData);

/// Makes thumbnails of callouts away from the caller's thread. Any thread.
class KESTO_EXPORT ICalloutThumbnailLoader {
public:
    /// Returns at once. The picture comes to the callback, with `thumbnailKey` and `userData` as they are
    /// here. A callout that gives none is passed over in silence: the callback is not called. `width` and
    /// `height` bound the picture in pixels, as for
    /// `GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout`.
    virtual void LoadThumbnailForCallout(const std::string& thumbnailKey,
                                         boost::shared_ptr<const KestoMediaLib::Callout> callout, int width,
                                         int height, const std::string& userData) = 0;

    /// From now on. Null changes nothing: see `ClearCallbacks`.
    virtual void SetCallbacks(CalloutThumbnailCallback* callback) = 0;

    /// From now on thumbnails are thrown away. A call that has begun may still be running on return.
    virtual void ClearCallbacks() = 0;

    virtual ~ICalloutThumbnailLoader() = default;
};

} // namespace KestoThumbnailer
