#include "sheet/SheetTimes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace KestoHost;
using KestoMediaLib::modelTimePerSecond;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr ModelTime second = modelTimePerSecond;
constexpr ModelTime millisecond = second / 1000;

std::string reasonOf(const TimesAsked& asked, ModelTime duration) {
    const auto refusal = refusalOfTimes(asked, duration, "clip.mp4");
    return refusal ? refusal->reason : "";
}

} // namespace

TEST(SheetTimes, CountIsSpacedEvenlyFromTheStart) {
    EXPECT_THAT(timesFor({.count = 4}, 10 * second),
                ElementsAre(0, 5 * second / 2, 5 * second, 15 * second / 2));
}

TEST(SheetTimes, CountOfAnyDurationIsRoundedDownEachForItself) {
    EXPECT_THAT(timesFor({.count = 3}, 1000), ElementsAre(0, 333, 666));
}

TEST(SheetTimes, CountOfALongDurationDoesNotOverflow) {
    const ModelTime duration = 1'000'000'000 * second;
    EXPECT_EQ(timesFor({.count = mostTiles}, duration).back(), duration / mostTiles * (mostTiles - 1));
}

TEST(SheetTimes, StepStartsAtZeroAndStaysBeforeTheEnd) {
    EXPECT_THAT(timesFor({.every = 2 * second}, 6 * second), ElementsAre(0, 2 * second, 4 * second));
    EXPECT_THAT(timesFor({.every = 2 * second}, 6 * second + 2 * millisecond), SizeIs(4));
    EXPECT_THAT(timesFor({.every = 9 * second}, second), ElementsAre(0));
}

TEST(SheetTimes, StepLeavesNoTileThatNoCueCouldShow) {
    const ModelTime duration = 6 * second + millisecond / 10;
    EXPECT_THAT(timesFor({.every = 2 * second}, duration), SizeIs(3));
    EXPECT_EQ(reasonOf({.every = 2 * second}, duration), "");
}

TEST(SheetTimes, ListIsSortedAndHasEachTimeOnce) {
    EXPECT_THAT(parseTimes("3,1.5,0:03,0"), testing::Optional(ElementsAre(0, 3 * second / 2, 3 * second)));
}

TEST(SheetTimes, ListWithAnythingElseIsRefused) {
    for (const char* list : {"", ",", "1,", ",1", "1,,2", "1;2", "1, 2", "1,x"})
        EXPECT_FALSE(parseTimes(list)) << list;
}

TEST(SheetTimes, ValuesOfOptionsAreToldWithWhatWasExpected) {
    EXPECT_THAT(checkTileCount("12"), IsEmpty());
    for (const char* text : {"0", "-1", "1.5", "", "10001", "x"})
        EXPECT_THAT(checkTileCount(text), HasSubstr("from 1 to 10000")) << text;
    EXPECT_THAT(checkEvery("0.001"), IsEmpty());
    for (const char* text : {"0", "0.0001", "", "-1", "x"})
        EXPECT_THAT(checkEvery(text), HasSubstr("at least 0.001")) << text;
    EXPECT_THAT(checkTimes("1,2"), IsEmpty());
    EXPECT_THAT(checkTimes("1,b"), HasSubstr("found \"1,b\""));
}

TEST(SheetTimes, TimeAtTheEndOrAfterItIsRefusedAndNamed) {
    const TimesAsked asked = {.times = std::vector<ModelTime>{0, 12 * second + second / 2}};
    EXPECT_EQ(reasonOf(asked, 12 * second + second / 2), "after-end");
    EXPECT_EQ(reasonOf(asked, 13 * second), "");
    EXPECT_EQ(refusalOfTimes(asked, 10 * second, "clip.mp4")->message,
              "\"clip.mp4\" ends at 10 s; there is no tile at 12.5 s.");
}

TEST(SheetTimes, MediaWithoutDurationIsRefused) {
    EXPECT_EQ(reasonOf({.count = 1}, 0), "no-duration");
}

TEST(SheetTimes, TooManyStepsAreRefusedBeforeTheyAreCounted) {
    EXPECT_EQ(reasonOf({.every = millisecond}, 1'000'000 * second), "sheet-too-large");
    EXPECT_EQ(reasonOf({.every = second}, mostTiles * second), "");
    EXPECT_EQ(reasonOf({.every = second}, mostTiles * second + second / 2), "sheet-too-large");
}

TEST(SheetTimes, TilesWithinOneMillisecondAreRefused) {
    EXPECT_EQ(reasonOf({.count = 100}, 50 * millisecond), "too-dense");
    EXPECT_EQ(reasonOf({.count = 50}, 50 * millisecond), "");
}

TEST(SheetTimes, CuesLastFromTileToTileAndToTheEnd) {
    const ModelTime third = second / 3;
    EXPECT_THAT(cuesFor({0, third, 2 * third}, second),
                ElementsAre(Cue{0, 333}, Cue{333, 667}, Cue{667, 1000}));
    EXPECT_THAT(cuesFor({third}, second), ElementsAre(Cue{333, 1000}));
}
