#include "callout/CalloutArguments.h"

#include <gtest/gtest.h>

namespace KestoHost {

namespace {

nlohmann::json valueOf(const std::string& text) {
    const auto param = parseParam(text);
    return param ? param->second : nlohmann::json("refused");
}

} // namespace

TEST(CalloutArguments, AScaleIsTwoNumbersAbove0AndAtMost1000) {
    const auto scale = parseScale("1.5,1000");
    ASSERT_TRUE(scale);
    EXPECT_EQ(scale->horizontal, 1.5);
    EXPECT_EQ(scale->vertical, 1000);
    for (const char* text : {"", "1", ",", "1,", "0,1", "1,0", "1,-1", "1,x", "1,1,1", "nan,1", "1,1001"})
        EXPECT_FALSE(parseScale(text)) << text;
}

TEST(CalloutArguments, AnEdgeIsANameAndSeconds) {
    const auto edge = parseEdge("a=b=1.5");
    ASSERT_TRUE(edge);
    EXPECT_EQ(edge->name, "a=b");
    EXPECT_EQ(edge->seconds, 1.5);
    for (const char* text : {"", "Visual", "=1", "Visual=", "Visual=-1", "Visual=x", "\xFF=1"})
        EXPECT_FALSE(parseEdge(text)) << text;
}

TEST(CalloutArguments, AValueHasTheTypeOfItsParameter) {
    EXPECT_EQ(valueOf("Text="), "");
    EXPECT_EQ(valueOf("Text=a=b"), "a=b");
    EXPECT_EQ(valueOf("Alignment=left"), "left");
    EXPECT_EQ(valueOf("FillColor=#123456"), "#123456");
    EXPECT_EQ(valueOf("FontBold=true"), true);
    EXPECT_EQ(valueOf("FontBold=false"), false);
    EXPECT_EQ(valueOf("FontSize=12.5"), 12.5);
}

TEST(CalloutArguments, AWholeNumberAndAFractionAreToldApart) {
    EXPECT_TRUE(valueOf("DrawTime=1").is_number_integer());
    EXPECT_TRUE(valueOf("DrawTime=1.0").is_number_float());
}

TEST(CalloutArguments, OtherNamesAndTypesAreRefused) {
    for (const char* text : {"", "=", "Text", "text=a", "Colour=#123456", "FontBold=yes", "FontBold=1",
                             "FontSize=", "FontSize=big", "FontSize=[1]", "FontSize=\"1\"", "Text=\xFF"})
        EXPECT_EQ(valueOf(text), "refused") << text;
}

TEST(CalloutArguments, ANaturalSizeIsTwoLengthsInRange) {
    EXPECT_EQ(checkNaturalSize("1x16384"), "");
    for (const char* text : {"", "0x10", "10x0", "16385x1", "axb", "10"})
        EXPECT_NE(checkNaturalSize(text), "") << text;
}

TEST(CalloutArguments, ParametersAreOneJsonObject) {
    EXPECT_EQ(checkParams("{}"), "");
    for (const char* text : {"", "[]", "{", "1", "{} {}"})
        EXPECT_NE(checkParams(text), "") << text;
}

} // namespace KestoHost
