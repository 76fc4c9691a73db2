#include "svg/PlainSvg.h"

#include <gtest/gtest.h>

#include <string>

using SvgBackend::isPlainSvg;

namespace {

constexpr double fewPixels = 400 * 200;

std::string svg(const std::string& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 200 100'>" + content + "</svg>";
}

const std::string tick = "<path d='M80.5 50 95 65l25-35' stroke='#3e4' style='stroke-width:4px;fill:none'/>";

} // namespace

TEST(PlainSvg, OutlinesFillsAndGradientsArePlain) {
    for (const std::string& plain :
         {tick, "<g transform='rotate(30) translate(2,3)'>" + tick + "</g>",
          std::string("<defs><linearGradient id='a'><stop offset='0.5' stop-color='red'/></linearGradient>"
                      "</defs><rect width='12345' height='100%' rx='4' fill='url(#a)' opacity='0.5'/>"),
          std::string(
              "<!-- made by hand, <use> none -->\n<title>Tick</title><circle r='0.0' cx='1.123456789'/>")})
        EXPECT_TRUE(isPlainSvg(svg(plain), fewPixels)) << plain;
}

TEST(PlainSvg, TheUsualDeclarationsArePlain) {
    EXPECT_TRUE(isPlainSvg("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + svg(tick), fewPixels));
    EXPECT_FALSE(isPlainSvg("<?xml version=\"1.0\" encoding=\"UTF-7\"?>" + svg(tick), fewPixels));
    EXPECT_FALSE(isPlainSvg("<?xml version=\"1.0\"?><?xml-stylesheet href='a'?>" + svg(tick), fewPixels));
    EXPECT_FALSE(isPlainSvg("<!DOCTYPE svg>" + svg(tick), fewPixels));
    EXPECT_FALSE(isPlainSvg("\xEF\xBB\xBF" + svg(tick), fewPixels));
}

TEST(PlainSvg, WhatRepeatsOrReadsAnythingElseIsNot) {
    for (const std::string element :
         {"use", "pattern", "mask", "clipPath", "marker", "symbol", "image", "text", "style", "filter", "a",
          "switch", "foreignObject", "svg", "x:path", "feTurbulence", "![CDATA[", "!--", ""})
        EXPECT_FALSE(isPlainSvg(svg("<" + element + ">"), fewPixels)) << element;
}

TEST(PlainSvg, WhatTakesLongInOneElementIsNot) {
    for (const std::string attribute :
         {"stroke-dasharray='1'", "STYLE='Stroke-DashArray:1'", "filter='blur(9px)'", "style='f\\69lter:a'",
          "style='&#102;ilter:a'", "transform='scale(9)'", "transform='matrix(9,0,0,9,0,0)'",
          "transform='skewX(89.99)'", "font-size='9em'", "style='mix-blend-mode:hue'"})
        EXPECT_FALSE(isPlainSvg(svg("<g " + attribute + ">" + tick + "</g>"), fewPixels)) << attribute;
}

TEST(PlainSvg, WhatHasNumbersOfAnyMagnitudeIsNot) {
    for (const std::string number : {"123456", "1e9", "1.E9", "1.5e+9", "1e-9", ".001"})
        EXPECT_FALSE(isPlainSvg(svg("<rect width='" + number + "'/>"), fewPixels)) << number;
}

TEST(PlainSvg, ALongOneIsNotAndOneForALargePictureIsNot) {
    EXPECT_FALSE(isPlainSvg(svg("<desc>" + std::string(8192, 'a') + "</desc>"), fewPixels));
    EXPECT_TRUE(isPlainSvg(svg(tick), 1024.0 * 512));
    EXPECT_FALSE(isPlainSvg(svg(tick), 1024.0 * 512 + 1));
}

TEST(PlainSvg, WhatIsNoDocumentIsNot) {
    for (const std::string text : {"", "<", "<!--", "<svg", "text", "<html>", "<?xml", "#"})
        (void)isPlainSvg(text, fewPixels);
    EXPECT_FALSE(isPlainSvg("", fewPixels));
    EXPECT_FALSE(isPlainSvg("<html/>", fewPixels));
}
