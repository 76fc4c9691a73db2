#include "sheet/WebVtt.h"

#include <gtest/gtest.h>

using namespace KestoHost;

TEST(WebVtt, HasOneCueATileWithItsRectangle) {
    EXPECT_EQ(webVttText({{0, 2500}, {2500, 3'605'000}}, {CRect(0, 0, 160, 90), CRect(160, 90, 320, 180)},
                         "sheet.png"),
              "WEBVTT\n"
              "\n00:00:00.000 --> 00:00:02.500\nsheet.png#xywh=0,0,160,90\n"
              "\n00:00:02.500 --> 01:00:05.000\nsheet.png#xywh=160,90,160,90\n");
}

TEST(RelativeUrl, IsTheNameAloneInTheSameFolder) {
    EXPECT_EQ(relativeUrl("/tmp/a/sheet.vtt", "/tmp/a/sheet.png"), "sheet.png");
    EXPECT_EQ(relativeUrl("sheet.vtt", "sheet.png"), "sheet.png");
    EXPECT_EQ(relativeUrl("sheet.vtt", "./sheet.png"), "sheet.png");
}

TEST(RelativeUrl, LeadsFromOneFolderToTheOther) {
    EXPECT_EQ(relativeUrl("/tmp/a/vtt/sheet.vtt", "/tmp/a/img/sheet.png"), "../img/sheet.png");
    EXPECT_EQ(relativeUrl("sheet.vtt", "img/sheet.png"), "img/sheet.png");
}

TEST(RelativeUrl, EscapesWhatWouldEndANameOrBeginAScheme) {
    EXPECT_EQ(relativeUrl("a.vtt", "my sheet#1?.png"), "my%20sheet%231%3F.png");
    EXPECT_EQ(relativeUrl("a.vtt", "a:b-->c%.png"), "a%3Ab--%3Ec%25.png");
    EXPECT_EQ(relativeUrl("a.vtt", "\xC3\xA9\n.png"), "%C3%A9%0A.png");
}
