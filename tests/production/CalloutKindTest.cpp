#include "production/CalloutKind.h"

#include "support/renderer/TestCallout.h"

#include <gtest/gtest.h>

namespace KestoThumbnailer {

namespace {

using TestSupport::CalloutLook;
using TestSupport::makeTestCallout;
using CalloutPointer = boost::shared_ptr<const KestoMediaLib::Callout>;

CalloutPointer calloutOf(const std::string& kind, const std::string& shape, const std::string& style) {
    return makeTestCallout({.kind = kind, .shape = shape, .style = style});
}

} // namespace

TEST(CalloutKind, ARemixIsToldByKindAndShape) {
    EXPECT_TRUE(IsRemixArrow(calloutOf("remix", "arrow", "")));
    EXPECT_FALSE(IsRemixArrow(calloutOf("remix", "text", "")));
    EXPECT_FALSE(IsRemixArrow(calloutOf("TypeWinLine", "arrow", "")));
    EXPECT_TRUE(IsRemixText(calloutOf("remix", "text", "")));
    EXPECT_FALSE(IsRemixText(calloutOf("remix", "arrow", "")));
    EXPECT_FALSE(IsRemixText(calloutOf("", "text", "")));
}

TEST(CalloutKind, ALineAndAnSvgAreToldByTheirKindAlone) {
    EXPECT_TRUE(IsTypeWinLine(calloutOf("TypeWinLine", "any", "any")));
    EXPECT_FALSE(IsTypeWinLine(calloutOf("TypeWinSVG", "", "")));
    EXPECT_TRUE(IsTypeWinSVG(calloutOf("TypeWinSVG", "any", "any")));
    EXPECT_FALSE(IsTypeWinSVG(calloutOf("TypeWinLine", "", "")));
}

TEST(CalloutKind, ABoldTextArrowIsToldByStyleAndShapeOfAnyKind) {
    EXPECT_TRUE(IsBoldTextArrow(calloutOf("remix", "text-arrow", "bold")));
    EXPECT_TRUE(IsBoldTextArrow(calloutOf("", "text-arrow", "bold")));
    EXPECT_FALSE(IsBoldTextArrow(calloutOf("remix", "text-arrow", "basic")));
    EXPECT_FALSE(IsBoldTextArrow(calloutOf("remix", "text", "bold")));
}

TEST(CalloutKind, LetterCaseCounts) {
    EXPECT_FALSE(IsRemixArrow(calloutOf("Remix", "arrow", "")));
    EXPECT_FALSE(IsRemixText(calloutOf("remix", "Text", "")));
    EXPECT_FALSE(IsTypeWinLine(calloutOf("typewinline", "", "")));
    EXPECT_FALSE(IsTypeWinSVG(calloutOf("TypeWinSvg", "", "")));
    EXPECT_FALSE(IsBoldTextArrow(calloutOf("", "text-arrow", "Bold")));
}

TEST(CalloutKind, WithoutADrawingACalloutIsNothing) {
    CalloutLook look{
        .kind = "remix", .shape = "arrow", .style = "bold", .params = {{"DrawTime", __int64{1}}}};
    look.hasDrawing = false;
    for (const CalloutPointer& callout : {makeTestCallout(look), CalloutPointer()}) {
        EXPECT_FALSE(IsRemixArrow(callout));
        EXPECT_FALSE(IsRemixText(callout));
        EXPECT_FALSE(IsTypeWinLine(callout));
        EXPECT_FALSE(IsTypeWinSVG(callout));
        EXPECT_FALSE(IsBoldTextArrow(callout));
        EXPECT_FALSE(HasDrawParam(callout, "DrawTime"));
        EXPECT_EQ(CalloutFadeTime(callout), 0);
    }
}

TEST(CalloutKind, AParameterIsToldByItsNameAndItsType) {
    const auto callout =
        makeTestCallout({.params = {{"DrawTime", __int64{0}}, {"Speed", 1.5}, {"", __int64{1}}}});
    EXPECT_TRUE(HasDrawParam(callout, "DrawTime"));
    EXPECT_FALSE(HasDrawParam(callout, "Speed"));
    EXPECT_FALSE(HasDrawParam(callout, "Other"));
    EXPECT_FALSE(HasDrawParam(callout, ""));
}

} // namespace KestoThumbnailer
