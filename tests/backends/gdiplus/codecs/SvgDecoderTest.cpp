#include "backends/gdiplus/codecs/DecodedPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace GdiplusBackend {

namespace {

Bytes bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

/// An `svg` element with these attributes and this content.
Bytes svg(std::string_view attributes, std::string_view content = "") {
    std::string text = "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' ";
    text.append(attributes).append(">").append(content).append("</svg>");
    return bytesOf(text);
}

constexpr std::string_view redLeftBlueRight = "<rect width='32' height='40' fill='#c81020'/>"
                                              "<rect x='32' width='32' height='40' fill='#1020c8'/>";

std::pair<int, int> sizeOf(std::string_view attributes) {
    const auto decoder = openBytes(svg(attributes)).value();
    return {decoder->facts().width, decoder->facts().height};
}

std::string nested(std::size_t depth, std::string_view open, std::string_view close) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i)
        text += open;
    for (std::size_t i = 0; i < depth; ++i)
        text += close;
    return text;
}

} // namespace

TEST(SvgDecoder, DrawsInItsOwnSizeAndColours) {
    const auto picture = decodedPicture(svg("width='64' height='40'", redLeftBlueRight));
    EXPECT_EQ(picture.facts.width, 64);
    EXPECT_EQ(picture.facts.height, 40);
    EXPECT_EQ(picture.facts.pixelFormat(), PixelFormat32bppARGB);
    ASSERT_EQ(picture.rows.height(), 40);
    EXPECT_EQ(picture.rows.argb(0, 0), 0xFFC81020U);
    EXPECT_EQ(picture.rows.argb(31, 39), 0xFFC81020U);
    EXPECT_EQ(picture.rows.argb(32, 0), 0xFF1020C8U);
    EXPECT_EQ(picture.rows.argb(63, 39), 0xFF1020C8U);
}

TEST(SvgDecoder, WhatIsNotDrawnIsTransparent) {
    const auto picture = decodedPicture(svg("width='4' height='4'", "<rect width='2' height='4'/>"));
    EXPECT_EQ(picture.rows.argb(0, 0), 0xFF000000U);
    EXPECT_EQ(picture.rows.argb(3, 0), 0U);
}

TEST(SvgDecoder, HalfTransparentColoursAreNotPremultiplied) {
    const auto picture = decodedPicture(
        svg("width='4' height='4'", "<rect width='4' height='4' fill='#ff8040' fill-opacity='0.5'/>"));
    EXPECT_NEAR(picture.rows.sample(1, 1, 3), 128, 1);
    EXPECT_NEAR(picture.rows.sample(1, 1, 2), 0xFF, 1);
    EXPECT_NEAR(picture.rows.sample(1, 1, 1), 0x80, 2);
    EXPECT_NEAR(picture.rows.sample(1, 1, 0), 0x40, 2);
}

TEST(SvgDecoder, SmallerSizesAreDrawnAnew) {
    const Bytes file = svg("width='65' height='40'", redLeftBlueRight);
    EXPECT_THAT(openBytes(file).value()->facts().reductions, testing::ElementsAre(2, 4, 8, 16, 32));
    for (const int reduction : {2, 4, 8}) {
        const auto picture = decodedPicture(file, reduction);
        ASSERT_EQ(picture.rows.height(), 40 / reduction);
        EXPECT_EQ(picture.rows.bytesInRow(0), static_cast<std::size_t>(reducedLength(65, reduction)) * 4);
        EXPECT_EQ(picture.rows.argb(1, 1), 0xFFC81020U);
        EXPECT_EQ(picture.rows.argb(32 / reduction + 2, 1), 0xFF1020C8U);
    }
}

TEST(SvgDecoder, ADrawingWithoutViewBoxIsShrunkAsAWhole) {
    const auto picture = decodedPicture(svg("width='64' height='40'", redLeftBlueRight), 8);
    EXPECT_EQ(picture.rows.argb(3, 4), 0xFFC81020U);
    EXPECT_EQ(picture.rows.argb(4, 4), 0xFF1020C8U);
    EXPECT_EQ(picture.rows.argb(7, 4), 0xFF1020C8U);
}

TEST(SvgDecoder, LengthsAreTakenAt96DotsPerInch) {
    EXPECT_EQ(sizeOf("width='1in' height='25.4mm'"), std::pair(96, 96));
    EXPECT_EQ(sizeOf("width='72pt' height='10.2'"), std::pair(96, 11));
}

TEST(SvgDecoder, WithoutASizeTheViewBoxGivesIt) {
    EXPECT_EQ(sizeOf("viewBox='0 0 30 20'"), std::pair(30, 20));
    EXPECT_EQ(sizeOf("viewBox='0 0 30 20' width='100%' height='100%'"), std::pair(30, 20));
    EXPECT_EQ(sizeOf("viewBox='0 0 30 20' width='60'"), std::pair(60, 40));
    EXPECT_EQ(sizeOf("viewBox='0 0 30 20' height='60'"), std::pair(90, 60));
}

TEST(SvgDecoder, WithoutSizeAndViewBoxItIs150By150) {
    EXPECT_EQ(sizeOf(""), std::pair(150, 150));
}

TEST(SvgDecoder, EveryCutBeforeTheEndTagIsRefused) {
    const Bytes file = svg("width='64' height='40'", redLeftBlueRight);
    for (std::size_t length = 5; length < file.size(); ++length)
        ASSERT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted) << length;
}

TEST(SvgDecoder, BrokenMarkupIsDamage) {
    EXPECT_EQ(statusOf(svg("width='64' height='40'", "<rect></circle>")), Gdiplus::GenericError);
}

TEST(SvgDecoder, LyingDimensionsAreRefusedWhenItIsOpened) {
    for (const char* size : {"width='100000' height='100000'", "width='1e30' height='1'",
                             "width='40000' height='2'", "viewBox='0 0 1e20 1e20'"}) {
        const auto decoder = openBytes(svg(size));
        ASSERT_FALSE(decoder) << size;
        EXPECT_EQ(decoder.error().status, Gdiplus::OutOfMemory) << size;
    }
}

TEST(SvgDecoder, ASizeOfNothingIsDamage) {
    EXPECT_EQ(statusOf(svg("width='0' height='10'")), Gdiplus::GenericError);
}

TEST(SvgDecoder, FilesOutsideAreNotLoaded) {
    const auto picture = decodedPicture(
        svg("width='20' height='20'",
            "<image xlink:href='file:///usr/share/pixmaps/debian-logo.png' width='20' height='20'/>"
            "<image xlink:href='/etc/hostname' width='20' height='20'/>"));
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
            ASSERT_EQ(picture.rows.argb(x, y), 0U);
}

TEST(SvgDecoder, EntitiesThatMultiplyAreRefused) {
    std::string text = "<!DOCTYPE svg [<!ENTITY a0 'ha'>";
    for (int i = 1; i < 20; ++i) {
        text += "<!ENTITY a" + std::to_string(i) + " '";
        for (int copy = 0; copy < 10; ++copy)
            text += "&a" + std::to_string(i - 1) + ";";
        text += "'>";
    }
    text += "]><svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><text>&a19;</text></svg>";
    EXPECT_NE(statusOf(bytesOf(text)), Gdiplus::Ok);
}

TEST(SvgDecoder, ElementsNestedTooDeeplyAreRefused) {
    EXPECT_NE(statusOf(svg("width='9' height='9'", nested(5000, "<g>", "</g>"))), Gdiplus::Ok);
}

TEST(SvgDecoder, ThreadsMayDecodeOnePictureAtOnce) {
    EXPECT_EQ(threadsThatAgree(svg("width='64' height='40'", redLeftBlueRight)), 4);
}

} // namespace GdiplusBackend
