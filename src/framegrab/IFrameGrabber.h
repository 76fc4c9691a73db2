#pragma once

#include "platform/Export.h"
#include "platform/KestoRenderLib.h"
#include "platform/WinTypes.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

namespace KestoThumbnailer {

/// Tells what a source looks like at a time. One caller at a time, on any thread.
class KESTO_EXPORT IFrameGrabber {
public:
    virtual ~IFrameGrabber() = default;

    /// The frame at `time`, in seconds. `size` is the request of
    /// `FrameGrabberSizeCalculator::calculateOutputSize`; 0 by 0 is the source's own size. `keepOrientation`
    /// leaves the rows in the order in which they were drawn or decoded; without it the frame is turned
    /// upside down, after it was scaled.
    ///
    /// The frame is shared with the caller and never a view of memory that is used again; an empty pointer
    /// means that there is nothing to show at that time. Throws std::invalid_argument for a size that
    /// `calculateOutputSize` refuses, std::runtime_error when scaling fails.
    virtual boost::shared_ptr<KestoRenderLib::MetaBitmap>
    frameAtTime(boost::rational<__int64> time, bool keepOrientation, KestoRenderLib::Size size) = 0;
};

} // namespace KestoThumbnailer
