#include "sheet/ScrubPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace KestoHost;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

ScrubPage twoTiles() {
    return {.title = "clip.mp4",
            .mediaType = "image/png",
            .picture = "bytes",
            .width = 320,
            .height = 90,
            .cues = {{0, 500}, {500, 1000}},
            .tiles = {CRect(0, 0, 160, 90), CRect(160, 0, 320, 90)},
            .holes = {1}};
}

} // namespace

TEST(Base64, PadsToWholeGroups) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foob"), "Zm9vYg==");
    EXPECT_EQ(base64("\xFB\xEF\xFF"), "++//");
}

TEST(ScrubPage, CarriesTheSheetAndItsTiles) {
    const std::string html = htmlText(twoTiles());
    EXPECT_THAT(html, StartsWith("<!doctype html>"));
    EXPECT_THAT(html, HasSubstr("src=\"data:image/png;base64,Ynl0ZXM=\""));
    EXPECT_THAT(html,
                HasSubstr("{\"start\":500,\"x\":160,\"y\":0,\"width\":160,\"height\":90,\"hole\":true}"));
    EXPECT_THAT(html, HasSubstr("\"end\":1000"));
}

TEST(ScrubPage, NamesNothingOutsideOfItself) {
    const std::string html = htmlText(twoTiles());
    EXPECT_THAT(html, Not(HasSubstr("http:")));
    EXPECT_THAT(html, Not(HasSubstr("https:")));
    EXPECT_THAT(html, Not(HasSubstr("//cdn")));
    EXPECT_THAT(html, HasSubstr("default-src 'none'"));
}

TEST(ScrubPage, ATitleIsTextAndNotMarkup) {
    ScrubPage page = twoTiles();
    page.title = "</title><script>alert(1)</script>&\"";
    const std::string html = htmlText(page);
    EXPECT_THAT(html, Not(HasSubstr("<script>alert")));
    EXPECT_THAT(html, HasSubstr("&lt;/title&gt;&lt;script&gt;alert(1)&lt;/script&gt;&amp;&quot;"));
}

TEST(ScrubPage, ATitleThatIsNoUtf8IsMadeSo) {
    ScrubPage page = twoTiles();
    page.title = "a\xFFz";
    EXPECT_THAT(htmlText(page), HasSubstr("<title>a\xEF\xBF\xBDz</title>"));
}
