#pragma once

#include "video/ModelTime.h"

#include <KestoThumbnailer/platform/KestoMediaModel.h>

namespace KestoHost {

/// The frames of a project, which count from 0, and their times. All without rounding.
class FrameClock {
public:
    /// Frames to the second, above 0.
    explicit FrameClock(const boost::rational<unsigned long>& rate);

    /// The frame whose interval covers `time`, which is at least 0.
    __int64 frameAt(ModelTime time) const;
    /// In seconds.
    KestoMediaLib::SafeRational startOf(__int64 frame) const;
    /// In seconds. What is asked for a frame's middle gets that frame even where times are computed in
    /// floating point, which may round a frame's start to before it.
    boost::rational<__int64> middleOf(__int64 frame) const;

private:
    KestoMediaLib::SafeRational framesPerSecond;
};

} // namespace KestoHost
