#include "video/ModelTime.h"

#include <gtest/gtest.h>

using namespace KestoHost;

namespace {

constexpr ModelTime second = KestoMediaLib::modelTimePerSecond;

} // namespace

TEST(ParseTime, ReadsSecondsMinutesAndHours) {
    EXPECT_EQ(parseTime("75.5"), 75 * second + second / 2);
    EXPECT_EQ(parseTime("1:15.5"), 75 * second + second / 2);
    EXPECT_EQ(parseTime("00:01:15.500"), 75 * second + second / 2);
    EXPECT_EQ(parseTime("100:00:00"), 360'000 * second);
    EXPECT_EQ(parseTime("0"), 0);
}

TEST(ParseTime, RefusesAnyOtherText) {
    for (const char* text : {"", ":", "1:", ":1", "1:60", "1:60:00", "1:2:3:4", "-1", "1:-1", "1.5:00",
                             "1:1e1", "1:.", "x", "1 ", "nan", "inf", "1e10", "1:0x1"})
        EXPECT_FALSE(parseTime(text)) << text;
}

TEST(ParseTime, TakesWhatWasTypedForTheNearestMoment) {
    EXPECT_EQ(parseTime("0.7"), 7 * second / 10);
    EXPECT_EQ(parseTime("0.033333333"), second / 30);
    EXPECT_EQ(parseTime("99999.033333333"), 99'999 * second + second / 30);
}

TEST(ClockText, HasHoursMinutesSecondsAndMilliseconds) {
    EXPECT_EQ(clockText(0), "00:00:00.000");
    EXPECT_EQ(clockText(3'723'004), "01:02:03.004");
    EXPECT_EQ(clockText(360'000'000), "100:00:00.000");
}

TEST(SecondsText, HasNoMoreDigitsThanItTakes) {
    EXPECT_EQ(secondsText(12 * second + second / 2), "12.5 s");
    EXPECT_EQ(secondsText(second / 30), "0.033333 s");
    EXPECT_EQ(secondsText(100'000 * second), "100000 s");
}
