#pragma once

#include "platform/Gdiplus.h"
#include "platform/KestoMediaLib.h"
#include "platform/KestoRenderLib.h"
#include "platform/WinTypes.h"

#include <boost/shared_ptr.hpp>

#include <memory>

namespace KestoThumbnailer {

class IFrameGrabber;
struct ThumbnailLoaderJob;

// The pictures of jobs; null where there is none. What the sources throw passes through.

/// The frame that `grabber` has for the job's first time.
std::unique_ptr<Gdiplus::Bitmap> PictureOfFrame(const ThumbnailLoaderJob& job, IFrameGrabber& grabber);

/// The frame number of the first time in the job's project, which must be there; cut toward zero.
__int64 FrameNumberOf(const ThumbnailLoaderJob& job);

/// What lies in the middle of `viewport` on `frame`, as large as the zoom job says and at its natural size.
std::unique_ptr<Gdiplus::Bitmap> CropOfFrame(const ThumbnailLoaderJob& job,
                                             const boost::shared_ptr<KestoRenderLib::MetaBitmap>& frame,
                                             const KestoMediaLib::Rect<int>& viewport);

/// Of a video or an image; null for a job of any other kind of source.
std::unique_ptr<Gdiplus::Bitmap> PictureOfFile(const ThumbnailLoaderJob& job);

/// Of the first media, if that is a callout.
std::unique_ptr<Gdiplus::Bitmap> PictureOfCallout(const ThumbnailLoaderJob& job);

} // namespace KestoThumbnailer
