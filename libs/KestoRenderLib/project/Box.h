#pragma once

#include "platform/KestoRenderProject.h"

#include "KestoRenderLib/project/Affine.h"

namespace KestoRenderLib {

/// A rectangle by its edges, in fractions of pixels.
struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
};

inline bool isEmpty(const Rect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

inline Size sizeOf(const Rect& rect) {
    return {rect.right - rect.left, rect.bottom - rect.top};
}

/// Empty where the two do not meet.
Rect intersection(const Rect& one, const Rect& other);

/// The smallest box around what `map` makes of `box`.
Box boundsOf(const Box& box, const Affine& map);

/// The pixels that `box` touches, cut to the range of integers; none for what is not finite.
Rect touchedPixels(const Box& box);

/// The nearest whole edges, cut likewise.
Rect nearestPixels(const Box& box);

} // namespace KestoRenderLib
