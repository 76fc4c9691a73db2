#include "gdiplus/codecs/OptionalCodecs.h"

#include <gtest/gtest.h>

#include <string_view>

namespace GdiplusBackend {

namespace {

bool isSvg(std::string_view text) {
    return SvgCodec::recognises(std::as_bytes(std::span(text)));
}

bool isHeif(std::string_view text) {
    return HeifCodec::recognises(std::as_bytes(std::span(text)));
}

} // namespace

TEST(SvgCodec, IsRecognisedBehindWhatMayStandBeforeItsRoot) {
    EXPECT_TRUE(isSvg("<svg>"));
    EXPECT_TRUE(isSvg("\xEF\xBB\xBF <?xml version='1.0'?>\n<!-- made by hand --> <svg width='3'>"));
    EXPECT_TRUE(isSvg("<!DOCTYPE svg PUBLIC '-//W3C//DTD SVG 1.1//EN' 'svg11.dtd'><svg>"));
    EXPECT_TRUE(isSvg("<svg:svg xmlns:svg='http://www.w3.org/2000/svg'>"));
}

TEST(SvgCodec, OtherMarkupIsNotRecognised) {
    EXPECT_FALSE(isSvg("<html><svg></svg></html>"));
    EXPECT_FALSE(isSvg("<svgx>"));
    EXPECT_FALSE(isSvg("<!DOCTYPE html><svg>"));
    EXPECT_FALSE(isSvg("<!-- <svg> "));
    EXPECT_FALSE(isSvg("a <svg>"));
    EXPECT_FALSE(isSvg(""));
}

TEST(HeifCodec, IsRecognisedByItsMajorOrACompatibleBrand) {
    EXPECT_TRUE(isHeif(std::string_view("\0\0\0\x14"
                                        "ftypheic\0\0\0\0mif1",
                                        20)));
    EXPECT_TRUE(isHeif(std::string_view("\0\0\0\x18"
                                        "ftypabcd\0\0\0\0abcdavif",
                                        24)));
}

TEST(HeifCodec, AMovieIsNotRecognised) {
    EXPECT_FALSE(isHeif(std::string_view("\0\0\0\x14"
                                         "ftypisom\0\0\0\0mp42",
                                         20)));
    EXPECT_FALSE(isHeif(std::string_view("\0\0\0\x14"
                                         "ftypisom\0\0\0\0mp42heic",
                                         24)));
}

} // namespace GdiplusBackend
