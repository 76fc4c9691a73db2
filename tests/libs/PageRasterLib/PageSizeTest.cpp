#include "DrawnPage.h"
#include "PdfBuilder.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using Size = std::pair<int, int>;

/// {-1, -1} for a page without a size.
Size sizeOf(const std::string& pageEntries, int page = 1) {
    const OpenedPdf pdf(PdfBuilder{}.page(pageEntries).bytes());
    int width = -1;
    int height = -1;
    pdf->DefaultDimensions(page, width, height);
    return {width, height};
}

constexpr Size none{-1, -1};

TEST(PageSize, IsInPixelsAt96DotsPerInch) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 612 792]"), Size(816, 1056));
}

TEST(PageSize, IsRounded) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 100 101]"), Size(133, 135));
}

TEST(PageSize, IsAtLeastOnePixel) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 0.1 300]"), Size(1, 400));
}

TEST(PageSize, DoesNotDependOnWhereTheBoxLies) {
    EXPECT_EQ(sizeOf("/MediaBox [-75 -30 75 45]"), Size(200, 100));
}

TEST(PageSize, OfABoxWithItsCornersSwappedIsTheSame) {
    EXPECT_EQ(sizeOf("/MediaBox [150 75 0 0]"), Size(200, 100));
}

TEST(PageSize, IsThatOfTheCropBox) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 600 600] /CropBox [75 150 225 225]"), Size(200, 100));
}

TEST(PageSize, IsThatOfTheMediaBoxWhereTheCropBoxLeavesNothing) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 150 75] /CropBox [300 300 300 300]"), Size(200, 100));
}

TEST(PageSize, OfAPageTurnedByAQuarterIsTurned) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 150 75] /Rotate 90"), Size(100, 200));
    EXPECT_EQ(sizeOf("/MediaBox [0 0 150 75] /Rotate 270"), Size(100, 200));
    EXPECT_EQ(sizeOf("/MediaBox [0 0 150 75] /Rotate -90"), Size(100, 200));
}

TEST(PageSize, OfAPageTurnedByAHalfStays) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 150 75] /Rotate 180"), Size(200, 100));
}

TEST(PageSize, GrowsWithTheUserUnit) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 150 75] /UserUnit 2.5"), Size(500, 250));
}

TEST(PageSize, IsInheritedFromThePageTree) {
    PdfBuilder builder;
    builder.page("");
    builder.pageTreeRoot("<< /Type /Pages /Kids [4 0 R] /Count 1 /MediaBox [0 0 150 75] /Rotate 90 >>");
    const OpenedPdf pdf(builder.bytes());
    int width = 0;
    int height = 0;
    ASSERT_TRUE(pdf->DefaultDimensions(1, width, height));
    EXPECT_EQ(Size(width, height), Size(100, 200));
}

TEST(PageSize, WithoutAnyBoxIsLetter) {
    EXPECT_EQ(sizeOf(""), Size(816, 1056));
}

TEST(PageSize, CanBe32767Pixels) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 24575.25 75]"), Size(32767, 100));
}

TEST(PageSize, CanNotBeHadAbove32767Pixels) {
    EXPECT_EQ(sizeOf("/MediaBox [0 0 24576 75]"), none);
    EXPECT_EQ(sizeOf("/MediaBox [0 0 1000000000 1000000000]"), none);
    EXPECT_EQ(sizeOf("/MediaBox [0 0 75 100000000000000000000000000]"), none);
    EXPECT_EQ(sizeOf("/MediaBox [0 0 150 75] /UserUnit 1000000"), none);
}

TEST(PageSize, OfPagesThatAreNotThereCanNotBeHad) {
    for (const int page : {0, -1, 2, 2147483647})
        EXPECT_EQ(sizeOf("/MediaBox [0 0 150 75]", page), none) << page;
}

TEST(PageSize, IsEachPagesOwn) {
    const OpenedPdf pdf(
        PdfBuilder{}.page(mediaBox(75, 75)).page(mediaBox(150, 75)).page(mediaBox(75, 225)).bytes());
    int width = 0;
    int height = 0;
    ASSERT_TRUE(pdf->DefaultDimensions(3, width, height));
    EXPECT_EQ(Size(width, height), Size(100, 300));
    ASSERT_TRUE(pdf->DefaultDimensions(2, width, height));
    EXPECT_EQ(Size(width, height), Size(200, 100));
}

TEST(PageSize, IsFoundPastABranchThatLeadsBackUp) {
    PdfBuilder builder;
    builder.add("<< /Type /Pages /Kids [2 0 R 3 0 R] /Count 1 >>");
    builder.page(mediaBox(150, 75));
    builder.pageTreeRoot("<< /Type /Pages /Kids [3 0 R 5 0 R] /Count 1 >>");
    const OpenedPdf pdf(builder.bytes());
    int width = 0;
    int height = 0;
    ASSERT_TRUE(pdf->DefaultDimensions(1, width, height));
    EXPECT_EQ(Size(width, height), Size(200, 100));
}

} // namespace
