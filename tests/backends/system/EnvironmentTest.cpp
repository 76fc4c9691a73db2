#include "system/Environment.h"
#include "system/PixelBudget.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace SystemBackend {

namespace {

constexpr auto variable = "KESTO_ENVIRONMENT_TEST";
constexpr std::int64_t otherwise = -1;

std::int64_t numberIn(const char* text) {
    ::setenv(variable, text, 1);
    const std::int64_t number = positiveFromEnvironment(variable, otherwise);
    ::unsetenv(variable);
    return number;
}

TEST(PositiveFromEnvironment, IsTheNumber) {
    EXPECT_EQ(numberIn("1"), 1);
    EXPECT_EQ(numberIn("9223372036854775807"), 9223372036854775807);
}

TEST(PositiveFromEnvironment, IsTheOtherWithoutTheVariable) {
    EXPECT_EQ(positiveFromEnvironment(variable, otherwise), otherwise);
}

TEST(PositiveFromEnvironment, IsTheOtherForWhatIsNoPositiveWholeNumber) {
    for (const char* text : {"", "0", "-5", "12 ", " 12", "1e6", "12px", "9223372036854775808"})
        EXPECT_EQ(numberIn(text), otherwise) << '"' << text << '"';
}

TEST(PixelBudget, IsReadOnceForTheProcess) {
    const std::int64_t first = pixelBudget();
    ::setenv("KESTO_PIXEL_BUDGET", "17", 1);
    EXPECT_EQ(pixelBudget(), first);
    ::unsetenv("KESTO_PIXEL_BUDGET");
}

} // namespace

} // namespace SystemBackend
