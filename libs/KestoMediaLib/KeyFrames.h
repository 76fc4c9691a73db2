#pragma once

#include "platform/KestoMediaAnimation.h"

#include <array>
#include <span>
#include <vector>

namespace KestoMediaLib {

/// How a value goes from one key frame to the next. With `u` from 0 to 1 on the way, the part of the way that
/// is done is:
enum class Easing {
    Linear,    ///< u
    EaseIn,    ///< u * u
    EaseOut,   ///< 1 - (1 - u) * (1 - u)
    EaseInOut, ///< 2 * u * u in the first half, 1 - 2 * (1 - u) * (1 - u) in the second
    Hold,      ///< 0 until the next key frame
};

/// The part of the way that is done at `u`, which must lie in 0 to 1.
KESTO_EXPORT double eased(Easing easing, double u);

struct KeyFrame {
    RationalTime time; ///< in seconds from the media's start
    double value = 0;
    Easing easing = Easing::Linear; ///< from here to the next one
};

/// A number that stays, or that goes from key frame to key frame; before the first and after the last of them
/// it has their value.
class KESTO_EXPORT KeyFramedParam : public AnimationParam<double> {
public:
    KeyFramedParam(double value = 0); // NOLINT(google-explicit-constructor): a number is such a value
    /// Throws std::invalid_argument if there is none, or if times do not rise.
    explicit KeyFramedParam(std::vector<KeyFrame> frames);

    double valueAt(const RationalTime& time) const override;

    /// At least one; a value that stays has one at time 0.
    std::span<const KeyFrame> keyFrames() const { return frames; }

private:
    std::vector<KeyFrame> frames;
};

/// Two numbers, the horizontal and the vertical one.
class KESTO_EXPORT KeyFramedVector : public VectorParam {
public:
    KeyFramedVector() = default;
    KeyFramedVector(KeyFramedParam horizontal, KeyFramedParam vertical);

    const AnimationParam<double>& at(int component) const override;

private:
    std::array<KeyFramedParam, 2> components;
};

} // namespace KestoMediaLib
