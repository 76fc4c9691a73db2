#include "production/PdfPage.h"

#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "support/GdiplusUser.h"
#include "support/PdfFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <memory>

namespace KestoThumbnailer {

namespace {

using Helper = GdiplusBitmapThumbnailingHelper;
using TestSupport::pixelOf;
using TestSupport::wideOf;

constexpr Gdiplus::ARGB red = 0xFFFF0000;
constexpr Gdiplus::ARGB blue = 0xFF0000FF;
constexpr Gdiplus::ARGB white = 0xFFFFFFFF;

class PdfPage : public ::testing::Test {
protected:
    /// 720 by 540 points, 960 by 720 pixels: red at the left, blue at the right, a white band along the top.
    std::filesystem::path landscapePage(std::string_view name) const {
        const TestSupport::PdfFile file{.widthInPoints = 720,
                                        .heightInPoints = 540,
                                        .content = "1 0 0 rg 0 0 360 432 re f 0 0 1 rg 360 0 360 432 re f"};
        return folder.write(name, file.text());
    }

    static std::unique_ptr<Gdiplus::Bitmap> thumbnailOf(const std::filesystem::path& path, int width,
                                                        int height) {
        return std::unique_ptr<Gdiplus::Bitmap>(Helper::GetThumbnailForImage(wideOf(path), width, height));
    }

    TestSupport::TempFolder folder;
    TestSupport::GdiplusUser gdiplus;
};

} // namespace

TEST_F(PdfPage, IsDrawnAtItsDefaultSizeInPremultipliedColours) {
    const std::unique_ptr<Gdiplus::Bitmap> page(GetThumbnailForPdf(wideOf(landscapePage("page.pdf"))));
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->GetWidth(), 960U);
    EXPECT_EQ(page->GetHeight(), 720U);
    EXPECT_EQ(page->GetPixelFormat(), PixelFormat32bppPARGB);
    EXPECT_EQ(pixelOf(*page, 480, 10), white);
    EXPECT_EQ(pixelOf(*page, 10, 710), red);
    EXPECT_EQ(pixelOf(*page, 950, 710), blue);
}

TEST_F(PdfPage, ALandscapePageIsScaledDownIntoTheBounds) {
    const auto thumbnail = thumbnailOf(landscapePage("page.pdf"), 160, 120);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->GetWidth(), 160U);
    EXPECT_EQ(thumbnail->GetHeight(), 120U);
    EXPECT_EQ(pixelOf(*thumbnail, 80, 5), white);
    EXPECT_EQ(pixelOf(*thumbnail, 10, 110), red);
    EXPECT_EQ(pixelOf(*thumbnail, 150, 110), blue);
}

TEST_F(PdfPage, TheExtensionIsComparedIgnoringCase) {
    EXPECT_NE(thumbnailOf(landscapePage("PAGE.PdF"), 160, 120), nullptr);
}

TEST_F(PdfPage, APathMayHaveAnyCharacters) {
    EXPECT_NE(thumbnailOf(landscapePage("\xC3\x9C"
                                        "bersicht \xE2\x82\xAC.pdf"),
                          160, 120),
              nullptr);
}

TEST_F(PdfPage, APdfUnderAnotherExtensionIsNoPicture) {
    EXPECT_EQ(thumbnailOf(landscapePage("page.png"), 160, 120), nullptr);
}

TEST_F(PdfPage, AFolderNamedLikeADocumentDoesNotMakeOne) {
    std::filesystem::create_directory(folder / "papers.pdf");
    EXPECT_EQ(thumbnailOf(landscapePage("papers.pdf/page"), 160, 120), nullptr);
    EXPECT_EQ(thumbnailOf(folder / "papers.pdf", 160, 120), nullptr);
}

TEST_F(PdfPage, AnEmptyFileHasNoThumbnail) {
    EXPECT_EQ(thumbnailOf(folder.write("empty.pdf", ""), 160, 120), nullptr);
}

TEST_F(PdfPage, WhatIsNoDocumentHasNoThumbnail) {
    EXPECT_EQ(thumbnailOf(folder.write("text.pdf", "not a document at all"), 160, 120), nullptr);
}

TEST_F(PdfPage, ADocumentWithoutPagesHasNoThumbnail) {
    const TestSupport::PdfFile file{.pages = 0};
    EXPECT_EQ(thumbnailOf(folder.write("none.pdf", file.text()), 160, 120), nullptr);
}

TEST_F(PdfPage, AMissingDocumentHasNoThumbnail) {
    EXPECT_EQ(GetThumbnailForPdf(wideOf(folder / "missing.pdf")), nullptr);
}

TEST_F(PdfPage, ADocumentUnderAPasswordHasNoThumbnail) {
    const TestSupport::PdfFile file{.widthInPoints = 72, .heightInPoints = 72, .encrypted = true};
    EXPECT_EQ(thumbnailOf(folder.write("secret.pdf", file.text()), 160, 120), nullptr);
}

} // namespace KestoThumbnailer
