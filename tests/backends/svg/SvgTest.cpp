#include "svg/Svg.h"

#include <gtest/gtest.h>

#include <string>

using namespace SvgBackend;

// The program does not lie beside this test.

TEST(Svg, PlainDocumentsNeedNoProgram) {
    const std::string plain = "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='4'><rect/></svg>";
    const auto size = measureSvg(plain);
    ASSERT_TRUE(size);
    EXPECT_EQ(size->width, 8);
    EXPECT_EQ(size->height, 4);
    EXPECT_TRUE(drawSvg({plain}, 8, 4));
}

TEST(Svg, WithoutTheProgramOtherDocumentsAreRefused) {
    const std::string text = "<svg xmlns='http://www.w3.org/2000/svg'><text>a</text></svg>";
    const auto size = measureSvg(text);
    ASSERT_FALSE(size);
    EXPECT_EQ(size.error().kind, SvgError::Kind::NotInstalled);
    EXPECT_EQ(size.error().message, "kesto-svg: this program is not installed");
    const auto picture = drawSvg({text}, 8, 4);
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().kind, SvgError::Kind::NotInstalled);
}
