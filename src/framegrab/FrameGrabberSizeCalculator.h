#pragma once

#include "platform/Export.h"
#include "platform/KestoRenderLib.h"

namespace KestoThumbnailer {

/// Without state; any thread.
class KESTO_EXPORT FrameGrabberSizeCalculator {
public:
    FrameGrabberSizeCalculator() = delete;

    /// The size of the frame that is given for a request: the largest of the source's shape that fits into
    /// the requested box, enlarged if need be. A requested length of 0 follows from the other one; both 0 ask
    /// for the source's own size. Lengths are truncated, so one of them may end as 0; beyond the range they
    /// are held at its end. Throws std::invalid_argument for a negative request, or a source length below 1.
    static KestoRenderLib::Size calculateOutputSize(KestoRenderLib::Size sourceImageSize,
                                                    KestoRenderLib::Size requestedSize);
};

} // namespace KestoThumbnailer
