#include "video/FrameClock.h"

namespace KestoHost {

using KestoMediaLib::RationalUtil;
using KestoMediaLib::SafeRational;

FrameClock::FrameClock(const boost::rational<unsigned long>& rate)
    : framesPerSecond(static_cast<__int64>(rate.numerator()), static_cast<__int64>(rate.denominator())) {}

__int64 FrameClock::frameAt(ModelTime time) const {
    const SafeRational frames = RationalUtil::toSeconds(time) * framesPerSecond;
    return frames.numerator() / frames.denominator();
}

SafeRational FrameClock::startOf(__int64 frame) const {
    return SafeRational(frame) / framesPerSecond;
}

boost::rational<__int64> FrameClock::middleOf(__int64 frame) const {
    const SafeRational middle = SafeRational(2 * frame + 1, 2) / framesPerSecond;
    return {middle.numerator(), middle.denominator()};
}

} // namespace KestoHost
