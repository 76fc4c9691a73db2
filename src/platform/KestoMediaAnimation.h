#pragma once

#include "platform/KestoMediaLib.h"
#include "platform/KestoMediaTime.h"

namespace KestoMediaLib {

/// A value that may change with time.
template <class T>
class KESTO_EXPORT AnimationParam : public KestoObject {
public:
    /// `time` counts from the start of the media; before it and after its end the value goes on.
    virtual T valueAt(const RationalTime& time) const = 0;
};

/// Several values that change with time, each by itself.
class KESTO_EXPORT VectorParam : public KestoObject {
public:
    /// The horizontal component is 0, the vertical one 1. Throws std::out_of_range for a component that is
    /// not there. The result lives as long as this.
    virtual const AnimationParam<double>& at(int component) const = 0;
};

} // namespace KestoMediaLib
