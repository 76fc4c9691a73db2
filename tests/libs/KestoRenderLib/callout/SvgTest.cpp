#include "libs/KestoRenderLib/callout/Overlay.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>

using namespace CalloutTests;

namespace {

std::string svg(const std::string& content, const std::string& attributes = "viewBox='0 0 200 100'") {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' " +
           attributes + ">" + content + "</svg>";
}

const std::string lineAcross =
    "<path d='M0,50 H200' stroke='#ff0000' stroke-width='20' fill='none' stroke-linecap='butt'/>";

Sketch drawing(const std::string& document, double seconds = 0, Params params = {}) {
    params.emplace("Svg", document);
    return {.shape = "", .params = params, .kind = "TypeWinSVG", .seconds = seconds};
}

const Params inTwoSeconds = {{"DrawTime", __int64{2}}};

Extent drawnAt(const std::string& content, double seconds) {
    return draw(drawing(svg(content), seconds, inTwoSeconds)).painted();
}

} // namespace

TEST(CalloutSvg, FillsItsBox) {
    const Overlay overlay = draw(drawing(svg("<rect width='100' height='100' fill='#ff0000'/>")));
    EXPECT_EQ(overlay.painted(), (Extent{0, 0, 100, 100}));
    EXPECT_EQ(overlay.at(50, 50), 0xFFFF0000U);
    EXPECT_EQ(overlay.at(150, 50), 0U);
}

TEST(CalloutSvg, KeepsItsShapeInTheMiddle) {
    const std::string square = svg("<rect width='10' height='10'/>", "viewBox='0 0 10 10'");
    EXPECT_EQ(draw(drawing(square)).painted(), (Extent{50, 0, 150, 100}));
}

TEST(CalloutSvg, OneWithoutAViewBoxIsScaledByItsSize) {
    const std::string square = svg("<rect width='10' height='10'/>", "width='10' height='10'");
    EXPECT_EQ(draw(drawing(square)).painted(), (Extent{50, 0, 150, 100}));
}

TEST(CalloutSvg, BothKindsAreDrawn) {
    Sketch sketch = drawing(svg(lineAcross));
    sketch.kind = "MacSVG";
    EXPECT_EQ(draw(sketch).painted(), (Extent{0, 40, 200, 60}));
}

TEST(CalloutSvg, OtherKindsIgnoreIt) {
    Sketch sketch = drawing(svg(lineAcross));
    sketch.kind = "remix";
    EXPECT_TRUE(draw(sketch).isEmpty());
}

TEST(CalloutSvg, WithoutADrawTimeAllOfItIsThereAtOnce) {
    EXPECT_EQ(draw(drawing(svg(lineAcross))).painted(), (Extent{0, 40, 200, 60}));
}

TEST(CalloutSvg, ALineGrowsUpToTheDrawTime) {
    EXPECT_EQ(drawnAt(lineAcross, 0), Extent());
    EXPECT_EQ(drawnAt(lineAcross, 0.5), (Extent{0, 40, 50, 60}));
    EXPECT_EQ(drawnAt(lineAcross, 1), (Extent{0, 40, 100, 60}));
    EXPECT_EQ(drawnAt(lineAcross, 2), (Extent{0, 40, 200, 60}));
    EXPECT_EQ(drawnAt(lineAcross, 9), (Extent{0, 40, 200, 60}));
}

TEST(CalloutSvg, OneThatHasNotBegunIsTransparentAndNotNothing) {
    const Overlay overlay = draw(drawing(svg(lineAcross), 0, inTwoSeconds));
    ASSERT_FALSE(overlay.isEmpty());
    EXPECT_FALSE(overlay.hasAnything());
}

TEST(CalloutSvg, ElementsAreDrawnOneAfterTheOther) {
    const std::string two = "<g stroke='#000' stroke-width='10'><line x1='0' y1='20' x2='200' y2='20'/>"
                            "<polyline points='0,80 200,80' fill='none'/></g>";
    EXPECT_EQ(drawnAt(two, 0.5), (Extent{0, 15, 100, 25}));
    EXPECT_EQ(drawnAt(two, 1), (Extent{0, 15, 200, 25}));
    EXPECT_EQ(drawnAt(two, 1.5), (Extent{0, 15, 200, 85}));
}

TEST(CalloutSvg, TimeIsSharedOutByLength) {
    const std::string shortAndLong =
        "<g stroke='#000' stroke-width='10'><line x1='0' y1='20' x2='50' y2='20'/>"
        "<line x1='0' y1='80' x2='150' y2='80'/></g>";
    EXPECT_EQ(drawnAt(shortAndLong, 0.5), (Extent{0, 15, 50, 25}));
}

TEST(CalloutSvg, ALineWithDashesOfItsOwnGrowsToo) {
    const std::string line = "id='line' d='M0,50 H200' stroke='#f00' stroke-width='20' fill='none'";
    for (const std::string& dashed :
         {"<path stroke-dasharray='30 10' " + line + "/>",
          "<path style='stroke-dasharray: 30 10; stroke-dashoffset: 5' " + line + "/>",
          "<path style=\"\" stroke-dasharray='30 10' " + line + "/>",
          "<style>svg #line { stroke-dasharray: 30 10 }</style><path " + line + "/>"}) {
        EXPECT_EQ(drawnAt(dashed, 0.5), (Extent{0, 40, 50, 60})) << dashed;
        EXPECT_EQ(drawnAt(dashed, 1), (Extent{0, 40, 100, 60})) << dashed;
    }
}

TEST(CalloutSvg, ALineKeepsTheRestOfItsStyleWhileItGrows) {
    const std::string line = "<path d='M0,50 H200' style='stroke:#0000ff;stroke-width:20'/>";
    const Overlay overlay = draw(drawing(svg(line), 1, inTwoSeconds));
    EXPECT_EQ(overlay.painted(), (Extent{0, 40, 100, 60}));
    EXPECT_EQ(overlay.at(50, 50), 0xFF0000FFU);
}

TEST(CalloutSvg, FillsFadeIn) {
    const std::string disc = "<circle cx='100' cy='50' r='40' fill='#00ff00'/>";
    const auto alphaAt = [&](double seconds) {
        return draw(drawing(svg(disc), seconds, inTwoSeconds)).alphaAt(100, 50);
    };
    EXPECT_EQ(alphaAt(0), 0);
    EXPECT_NEAR(alphaAt(1), 128, 2);
    EXPECT_EQ(alphaAt(2), 255);
}

TEST(CalloutSvg, EveryPathCommandIsMeasured) {
    // From the left to the right by each command; half of the time is about half of the way.
    const std::string path =
        "<path fill='none' stroke='#000' stroke-width='4' d='M0 50h20 L40,50 H60v0V50l10 0"
        "c5 0 5 0 10 0 C85 50 85 50 90 50 s5 0 10 0 S115 50 120 50 q5 0 10 0 Q145 50 150 50"
        "t10 0 T180 50 a10,10 0 01 20,0'/>";
    const Extent half = drawnAt(path, 1);
    EXPECT_NEAR(half.right, 105, 12);
    EXPECT_EQ(drawnAt(path, 2).right, 200);
}

TEST(CalloutSvg, OtherDrawnElementsAreMeasuredToo) {
    for (const std::string element :
         {"rect x='50' y='10' width='100' height='80'", "circle cx='100' cy='50' r='40'",
          "ellipse cx='100' cy='50' rx='90' ry='30'", "polygon points='10,10 190,10 100,90'"}) {
        const std::string content = "<" + element + " fill='none' stroke='#000' stroke-width='4'/>";
        const int half = draw(drawing(svg(content), 1, inTwoSeconds)).paintedPixels();
        const int whole = draw(drawing(svg(content), 2, inTwoSeconds)).paintedPixels();
        EXPECT_NEAR(half, whole / 2, whole / 10) << element;
    }
}

TEST(CalloutSvg, TheEdgeTellsWhenItIsDone) {
    Sketch sketch = drawing(svg(lineAcross), 1, {{"DrawTime", 60.0}});
    sketch.edges = {{"DrawPercentageFade", KestoMediaLib::EdgeModification::Edge::Start, 4}};
    EXPECT_EQ(draw(sketch).painted().right, 50);
    sketch.kind = "MacSVG";
    sketch.edges = {{"Visual", KestoMediaLib::EdgeModification::Edge::Start, 2}};
    EXPECT_EQ(draw(sketch).painted().right, 100);
}

TEST(CalloutSvg, ShapesDrawThemselvesAsWell) {
    const Params params = {{"DrawTime", __int64{2}}, {"StrokeWidth", 10.0}, {"BorderColor", red}};
    Sketch sketch = {.shape = "line", .params = params, .kind = "TypeWinSVG", .seconds = 1};
    EXPECT_NEAR(draw(sketch).painted().right, 100, 6);
    sketch.kind = "remix";
    EXPECT_EQ(draw(sketch).painted().right, 200) << "other kinds are there at once";
}

TEST(CalloutSvg, ABorderIsDrawnByAPenAndTheRestFadesIn) {
    const Params params = {
        {"DrawTime", __int64{2}}, {"BorderColor", red}, {"BorderWidth", 4.0}, {"FillColor", green}};
    const Sketch sketch = {.shape = "rectangle", .params = params, .kind = "TypeWinSVG", .seconds = 1};
    const Overlay overlay = draw(sketch);
    EXPECT_EQ(overlay.at(100, 1), 0xFFFF0000U);
    EXPECT_NE(overlay.at(100, 98), 0xFFFF0000U);
    EXPECT_NEAR(overlay.alphaAt(100, 50), 128, 2);
}

TEST(CalloutSvg, BadDocumentsDrawNothing) {
    for (const std::string bad :
         {"", "no markup", "<svg", "<svg xmlns='http://www.w3.org/2000/svg'><g></svg>", "<html/>",
          "<?xml version='1.0'?>", "<svg xmlns='http://www.w3.org/2000/svg' width='0' height='0'>"})
        for (const double seconds : {0.0, 1.0, 2.0})
            EXPECT_TRUE(draw(drawing(bad, seconds, inTwoSeconds)).isEmpty()) << bad;
}

TEST(CalloutSvg, CompressedDocumentsDrawNothing) {
    // "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' height='9'/></svg>"
    static constexpr std::array<unsigned char, 91> bytes = {
        0x1F, 0x8B, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0x03, 0xB3, 0x29, 0x2E, 0x4B, 0x57, 0xA8,
        0xC8, 0xCD, 0xC9, 0x2B, 0xB6, 0x55, 0xCF, 0x28, 0x29, 0x29, 0xB0, 0xD2, 0xD7, 0x2F, 0x2F, 0x2F,
        0xD7, 0x2B, 0x37, 0xD6, 0xCB, 0x2F, 0x4A, 0xD7, 0x37, 0x32, 0x30, 0x30, 0xD0, 0x07, 0xAA, 0x50,
        0x57, 0x28, 0xCF, 0x4C, 0x29, 0xC9, 0xB0, 0x55, 0xB7, 0x54, 0x57, 0xC8, 0x48, 0xCD, 0x4C, 0xCF,
        0x28, 0x01, 0x31, 0xED, 0x6C, 0x8A, 0x52, 0x93, 0x4B, 0xB0, 0x4A, 0xE9, 0xDB, 0xD9, 0x80, 0xF4,
        0xD9, 0x01, 0x00, 0x30, 0x79, 0x72, 0x83, 0x5F, 0x00, 0x00, 0x00};
    EXPECT_TRUE(draw(drawing({bytes.begin(), bytes.end()})).isEmpty());
}

TEST(CalloutSvg, DamagedPathsAreDrawnAsFarAsTheyGo) {
    for (const std::string d :
         {"M0,50 H200 Lx", "M0 50 L200", "", "Z", "zzzz", "M1e999 0", "M 0 50 a 1 1 0 0"})
        for (const double seconds : {0.5, 1.5, 2.0})
            EXPECT_FALSE(draw(drawing(svg("<path stroke='#000' d='" + d + "'/><rect width='9' height='9'/>"),
                                      seconds, inTwoSeconds))
                             .isEmpty())
                << d;
}

TEST(CalloutSvg, ItMayComeFromAFile) {
    const TestSupport::TempFolder folder;
    const auto path = folder.write("line.svg", svg(lineAcross));
    EXPECT_EQ(draw({.shape = "", .params = {{"SvgFile", path.string()}}, .kind = "TypeWinSVG"}).painted(),
              (Extent{0, 40, 200, 60}));
}

TEST(CalloutSvg, AFileThatCannotBeReadDrawsNothing) {
    const TestSupport::TempFolder folder;
    for (const std::string& path : {(folder / "missing.svg").string(), (folder / "").string(), std::string()})
        EXPECT_TRUE(draw({.shape = "arrow", .params = {{"SvgFile", path}}, .kind = "MacSVG"}).isEmpty())
            << path;
}

TEST(CalloutSvg, NothingOutsideOfTheDocumentIsLoaded) {
    const TestSupport::TempFolder folder;
    const TestSupport::PngFile png = {
        .width = 4, .height = 4, .pixelAt = [](int, int) { return 0xFFFF0000U; }};
    const std::string picture = folder.write("red.png", png.bytes()).string();
    const std::string style = folder.write("red.css", "rect{fill:#ff0000}").string();
    const std::string other =
        folder.write("red.svg", svg("<rect id='r' width='200' height='100' fill='#f00'/>")).string();
    const std::string text = folder.write("red.txt", "secret").string();
    const auto isBlank = [](const std::string& document) {
        const Overlay overlay = draw(drawing(document));
        return overlay.isEmpty() || !overlay.hasAnything();
    };
    for (const std::string scheme : {"", "file://"}) {
        EXPECT_TRUE(isBlank(svg("<image width='200' height='100' xlink:href='" + scheme + picture + "'/>")));
        EXPECT_TRUE(isBlank(svg("<style>@import url('" + scheme + style +
                                "');</style><rect fill='none' width='200' height='100'/>")));
        EXPECT_TRUE(isBlank(svg("<use xlink:href='" + scheme + other + "#r'/>")));
        EXPECT_TRUE(isBlank("<!DOCTYPE svg [<!ENTITY e SYSTEM '" + scheme + text + "'>]>" +
                            svg("<text y='50'>&e;</text>")));
        EXPECT_TRUE(isBlank(
            svg("<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' href='" + scheme + other + "'/>")));
    }
}

TEST(CalloutSvg, EntitiesWithinEntitiesEnd) {
    std::string bomb = "<!DOCTYPE svg [<!ENTITY a 'aaaaaaaaaa'>";
    for (char name = 'b'; name <= 'k'; ++name) {
        bomb += std::string("<!ENTITY ") + name + " '";
        for (int copy = 0; copy < 10; ++copy)
            bomb += std::string("&") + static_cast<char>(name - 1) + ";";
        bomb += "'>";
    }
    bomb += "]>" + svg("<text>&k;</text>");
    EXPECT_TRUE(draw(drawing(bomb)).isEmpty());
}

TEST(CalloutSvg, HardEdgesAreAskedOfItToo) {
    Sketch sketch = drawing(svg("<circle cx='100' cy='50' r='40'/>"));
    sketch.antialiased = false;
    EXPECT_EQ(draw(sketch).painted([](std::uint32_t argb) { return argb >> 24 != 0 && argb >> 24 != 255; }),
              Extent());
}

TEST(CalloutSvg, HasAShadowWhenAsked) {
    const Overlay overlay = draw(drawing(svg("<rect width='200' height='100' fill='#f00'/>"), 0,
                                         {{"Shadow", true},
                                          {"ShadowBlur", 0.0},
                                          {"ShadowColor", blue},
                                          {"ShadowOffsetX", 0.0},
                                          {"ShadowOffsetY", 10.0}}));
    EXPECT_EQ(overlay.at(100, 50), 0xFFFF0000U);
    EXPECT_EQ(overlay.at(100, 95), 0xFF0000FFU);
}
