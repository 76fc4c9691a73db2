#include "video/FrameClock.h"

#include <gtest/gtest.h>

#include <cmath>

using KestoHost::FrameClock;
using KestoMediaLib::modelTimePerSecond;
using Rate = boost::rational<unsigned long>;

namespace {

/// As the library finds a frame: in double precision.
__int64 frameFoundFor(const boost::rational<__int64>& time, const Rate& rate) {
    const double seconds = static_cast<double>(time.numerator()) / static_cast<double>(time.denominator());
    const double perSecond = static_cast<double>(rate.numerator()) / static_cast<double>(rate.denominator());
    return static_cast<__int64>(std::floor(perSecond * seconds));
}

} // namespace

TEST(FrameClock, AFrameLastsUpToTheNextOne) {
    const FrameClock clock(Rate(30));
    EXPECT_EQ(clock.frameAt(0), 0);
    EXPECT_EQ(clock.frameAt(modelTimePerSecond / 30 - 1), 0);
    EXPECT_EQ(clock.frameAt(modelTimePerSecond / 30), 1);
    EXPECT_EQ(clock.frameAt(modelTimePerSecond), 30);
}

TEST(FrameClock, FramesOfFractionalRatesStartExactly) {
    const FrameClock clock(Rate(30000, 1001));
    EXPECT_EQ(clock.frameAt(modelTimePerSecond), 29);
    EXPECT_EQ(clock.startOf(30), KestoMediaLib::SafeRational(1001, 1000));
    EXPECT_EQ(clock.frameAt(modelTimePerSecond / 1000 * 1001), 30);
}

TEST(FrameClock, TheMiddleOfAFrameIsThatFrameInDoublePrecisionToo) {
    for (const Rate rate : {Rate(30), Rate(30000, 1001), Rate(24000, 1001), Rate(modelTimePerSecond)})
        for (const __int64 frame :
             {__int64{0}, __int64{1}, __int64{29}, __int64{12'345}, __int64{7'056'000'000'001}})
            EXPECT_EQ(frameFoundFor(FrameClock(rate).middleOf(frame), rate), frame) << rate << ' ' << frame;
}
