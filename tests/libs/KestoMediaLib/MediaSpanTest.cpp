#include "KestoMediaLib/PlainMedia.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace {

using KestoMediaLib::ColorMedia;
using KestoMediaLib::contentTimeAt;
using KestoMediaLib::MediaSpan;
using KestoMediaLib::playsAt;
using KestoMediaLib::SafeRational;

TEST(MediaSpan, PlaysFromItsStartUntilJustBeforeItsEnd) {
    const MediaSpan span{.start = 100, .duration = 50};
    EXPECT_FALSE(playsAt(span, 99));
    EXPECT_TRUE(playsAt(span, 100));
    EXPECT_TRUE(playsAt(span, 149));
    EXPECT_FALSE(playsAt(span, 150));
}

TEST(MediaSpan, NeverPlaysWithoutDuration) {
    EXPECT_FALSE(playsAt({.start = 100, .duration = 0}, 100));
}

TEST(MediaSpan, ContentStartsAtTheMediaStart) {
    EXPECT_EQ(contentTimeAt({.start = 100, .duration = 50, .mediaStart = 7}, 110), 17);
}

TEST(MediaSpan, PlayRateRunsThroughTheContent) {
    MediaSpan span{.start = 100, .duration = 50, .mediaStart = 7, .playRate = 2};
    EXPECT_EQ(contentTimeAt(span, 110), 27);
    span.playRate = SafeRational(1, 4);
    EXPECT_EQ(contentTimeAt(span, 112), 10);
}

TEST(MediaSpan, AnimationsCountFromTheStartWhateverThePlayRate) {
    const MediaSpan span{.start = KestoMediaLib::modelTimePerSecond, .duration = 50, .playRate = 3};
    EXPECT_EQ(KestoMediaLib::animationTimeAt(span, 3 * KestoMediaLib::modelTimePerSecond), SafeRational(2));
}

TEST(MediaSpan, TimesAtTheEndOfTheRangeDoNotOverflow) {
    constexpr __int64 greatest = std::numeric_limits<__int64>::max();
    const MediaSpan span{.start = -KestoMediaLib::longestModelTime,
                         .duration = 1,
                         .mediaStart = KestoMediaLib::longestModelTime,
                         .playRate = greatest};
    EXPECT_EQ(contentTimeAt(span, greatest), greatest);
    EXPECT_FALSE(playsAt(span, greatest));
}

TEST(MediaSpan, MediaRefuseSpansThatCannotPlay) {
    ColorMedia media(0);
    EXPECT_THROW(media.setSpan({.duration = -1}), std::invalid_argument);
    EXPECT_THROW(media.setSpan({.playRate = 0}), std::invalid_argument);
    EXPECT_THROW(media.setSpan({.playRate = -1}), std::invalid_argument);
    EXPECT_THROW(media.setSpan({.start = KestoMediaLib::longestModelTime + 1}), std::invalid_argument);
}

} // namespace
