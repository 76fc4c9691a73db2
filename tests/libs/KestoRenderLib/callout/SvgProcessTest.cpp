#include "backends/svg/HostileSvg.h"
#include "libs/KestoRenderLib/callout/Overlay.h"

#include <gtest/gtest.h>

#include <string>

using namespace CalloutTests;
using namespace HostileSvg;

namespace {

Sketch drawing(const std::string& document) {
    return {.shape = "", .params = {{"Svg", document}}, .kind = "TypeWinSVG"};
}

const std::string disc = "<circle cx='100' cy='50' r='40' fill='#f00' stroke='#00f' stroke-width='6'/>";
/// Text is never plain, and this one shows nothing.
const std::string notPlain = "<text></text>";

void expectSame(const Overlay& one, const Overlay& other) {
    ASSERT_FALSE(one.isEmpty() || other.isEmpty());
    ASSERT_EQ(one.width(), other.width());
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            ASSERT_EQ(one.at(x, y), other.at(x, y)) << x << ',' << y;
}

} // namespace

TEST(SvgProcess, DrawsTheSamePixelsAsThisProcess) {
    const Sketch usual = drawing("");
    Sketch halfWay = drawing("");
    halfWay.params.emplace("DrawTime", __int64{2});
    halfWay.seconds = 1;
    Sketch shadowed = drawing("");
    shadowed.params.emplace("Shadow", true);
    Sketch hard = drawing("");
    hard.antialiased = false;
    Sketch large = drawing("");
    large.scale = 1.7F;
    Sketch onWhite = drawing("");
    onWhite.transparent = false;
    for (Sketch sketch : {usual, halfWay, shadowed, hard, large, onWhite}) {
        sketch.params["Svg"] = svg(disc);
        const Overlay here = draw(sketch);
        sketch.params["Svg"] = svg("<defs>" + notPlain + "</defs>" + disc);
        expectSame(here, draw(sketch));
    }
}

TEST(SvgProcess, ADocumentThatTakesTooLongDrawsNothing) {
    const TimeLimit limit("300");
    EXPECT_TRUE(draw(drawing(endless())).isEmpty());
}

TEST(SvgProcess, ADocumentThatTookTooLongIsNotTriedAgain) {
    const std::string document = endless() + "<!-- once -->";
    {
        const TimeLimit limit("300");
        ASSERT_TRUE(draw(drawing(document)).isEmpty());
    }
    const TimeLimit limit("1000000000");
    EXPECT_TRUE(draw(drawing(document)).isEmpty()) << "else this would not end";
}

TEST(SvgProcess, ADocumentThatLibrsvgDiesOfEndsNothingElse) {
    (void)draw(drawing(deadly()));
    EXPECT_EQ(draw(drawing(svg(disc + notPlain))).at(100, 50), 0xFFFF0000U);
}

TEST(SvgProcess, LeavesNothingBehind) {
    (void)draw(drawing(svg(disc + notPlain)));
    const std::ptrdiff_t before = openFiles();
    (void)draw(drawing(svg(disc + notPlain)));
    (void)draw(drawing("<svg>" + notPlain));
    (void)draw(drawing(deadly() + "<!-- again -->"));
    const TimeLimit limit("300");
    (void)draw(drawing(endless() + "<!-- again -->"));
    EXPECT_EQ(openFiles(), before);
    EXPECT_FALSE(hasChildren());
}
