#pragma once

#include "KestoMediaLib/KeyFrames.h"
#include "platform/KestoMedia.h"
#include "platform/KestoMediaGeometry.h"

namespace KestoMediaLib {

/// Where and how a media is shown within what holds it: the canvas, or the frame of a group or of stitched
/// media. A media is cropped, then scaled and turned about its anchor, and laid with its anchor on
/// `position`.
struct Placement {
    KeyFramedVector position; ///< in pixels from the middle of what holds it, y downwards
    KeyFramedVector scale{1, 1};
    KeyFramedVector anchor{0.5, 0.5}; ///< as parts of width and height from the upper left corner, uncropped
    KeyFramedParam rotation;          ///< in degrees, clockwise
    KeyFramedParam opacity = 1;       ///< 0 to 1
    KeyFramedParam cropLeft; ///< cut off, as part of the width or height; crops never move what is left
    KeyFramedParam cropTop;
    KeyFramedParam cropRight;
    KeyFramedParam cropBottom;
};

/// Carries points of the media, in its own pixels from its upper left corner, to points in pixels from the
/// middle of what holds it. `width` and `height` are those of the media at `time`.
KESTO_EXPORT TransformMatrix placementMatrix(const Placement& placement, const RationalTime& time,
                                             double width, double height);

/// What is left of a media of that size, in its own pixels. Crops are taken as lying in 0 to 1; those that
/// leave nothing give a size of 0.
KESTO_EXPORT Rect<double> croppedArea(const Placement& placement, const RationalTime& time, double width,
                                      double height);

/// Never outside of 0 to 1.
KESTO_EXPORT double opacityAt(const Placement& placement, const RationalTime& time);

/// That of a media of this model; one of another model lies in the middle as it is. The result lives as long
/// as the media.
KESTO_EXPORT const Placement& placementOf(const VisualMedia& media);

} // namespace KestoMediaLib
