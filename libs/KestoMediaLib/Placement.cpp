#include "KestoMediaLib/Placement.h"

#include "KestoMediaLib/EditableMedia.h"

#include <algorithm>

namespace KestoMediaLib {

namespace {

double partAt(const KeyFramedParam& param, const RationalTime& time) {
    return std::clamp(param.valueAt(time), 0.0, 1.0);
}

} // namespace

TransformMatrix placementMatrix(const Placement& placement, const RationalTime& time, double width,
                                double height) {
    const auto x = [&](const KeyFramedVector& vector) { return vector.at(0).valueAt(time); };
    const auto y = [&](const KeyFramedVector& vector) { return vector.at(1).valueAt(time); };
    const Point position(x(placement.position), y(placement.position), 0);
    const Point toAnchor(-x(placement.anchor) * width, -y(placement.anchor) * height, 0);
    return TransformMatrix::translate(position) * TransformMatrix::rotate(placement.rotation.valueAt(time)) *
           TransformMatrix::scale(x(placement.scale), y(placement.scale), 1) *
           TransformMatrix::translate(toAnchor);
}

Rect<double> croppedArea(const Placement& placement, const RationalTime& time, double width, double height) {
    const double left = partAt(placement.cropLeft, time) * width;
    const double top = partAt(placement.cropTop, time) * height;
    const double right = (1 - partAt(placement.cropRight, time)) * width;
    const double bottom = (1 - partAt(placement.cropBottom, time)) * height;
    return {left, top, std::max(right - left, 0.0), std::max(bottom - top, 0.0)};
}

double opacityAt(const Placement& placement, const RationalTime& time) {
    return partAt(placement.opacity, time);
}

const Placement& placementOf(const VisualMedia& media) {
    static const Placement inTheMiddle;
    const auto* own = dynamic_cast<const EditableVisual*>(&media);
    return own ? own->placement() : inTheMiddle;
}

} // namespace KestoMediaLib
