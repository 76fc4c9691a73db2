#pragma once

#include "platform/KestoRenderLib.h"

#include <boost/shared_ptr.hpp>

namespace KestoThumbnailer {

class IFrameGrabber;

/// Without state; any thread.
class FrameGrabberUtil {
public:
    FrameGrabberUtil() = delete;

    /// A new frame of the size that `FrameGrabberSizeCalculator::calculateOutputSize` gives, also when
    /// `bitmap` has that size already. `bitmap` is only read. Throws std::invalid_argument for an empty
    /// pointer and for sizes that `calculateOutputSize` refuses, std::runtime_error when scaling fails, as
    /// it does for a result without width or height.
    static boost::shared_ptr<KestoRenderLib::MetaBitmap>
    scaleBitmapToFit(const boost::shared_ptr<KestoRenderLib::MetaBitmap>& bitmap,
                     const KestoRenderLib::Size& requestedSize);
};

/// The frame at `seconds`, cut to whole milliseconds toward zero, in full size and with its orientation kept.
/// A time that is no number counts as 0; beyond the range it is held at its end.
boost::shared_ptr<KestoRenderLib::MetaBitmap> FrameAtSeconds(double seconds, IFrameGrabber& grabber);

} // namespace KestoThumbnailer
