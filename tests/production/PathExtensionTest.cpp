#include "production/PathExtension.h"

#include <gtest/gtest.h>

namespace KestoThumbnailer {

namespace {

std::wstring extensionOf(const wchar_t* path) {
    std::wstring extension = L"stale";
    EXPECT_TRUE(ExtensionOf(path, &extension)) << path;
    return extension;
}

} // namespace

TEST(PathExtension, IsWhatFollowsTheLastDotInItsOwnCase) {
    EXPECT_EQ(extensionOf(L"page.tar.Pdf"), L"Pdf");
    EXPECT_EQ(extensionOf(L"C:\\Papers\\Page.PDF"), L"PDF");
}

TEST(PathExtension, OfANameWithoutDotIsEmpty) {
    std::wstring extension = L"stale";
    EXPECT_FALSE(ExtensionOf(L"page", &extension));
    EXPECT_EQ(extension, L"");
    EXPECT_FALSE(ExtensionOf(L"", &extension));
}

TEST(PathExtension, ADotBeforeTheLastBackslashDoesNotCount) {
    std::wstring extension = L"stale";
    EXPECT_FALSE(ExtensionOf(L"C:\\papers.pdf\\page", &extension));
    EXPECT_EQ(extension, L"");
}

TEST(PathExtension, AForwardSlashIsNoSeparator) {
    EXPECT_EQ(extensionOf(L"/papers.pdf/page"), L"pdf/page");
}

TEST(PathExtension, OfANameThatEndsInADotIsThereAndEmpty) {
    EXPECT_EQ(extensionOf(L"page."), L"");
}

} // namespace KestoThumbnailer
