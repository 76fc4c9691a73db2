#include "production/GdiplusBitmapThumbnailingHelper.h"

#include "support/GdiplusUser.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

namespace KestoThumbnailer {

TEST(UnshownSources, HaveNoThumbnailEvenForAGoodPicture) {
    const TestSupport::TempFolder folder;
    const TestSupport::GdiplusUser gdiplus;
    const TestSupport::PngFile png{.width = 4, .height = 4, .pixelAt = [](int, int) { return 0xFFFF0000U; }};
    const std::wstring path = TestSupport::wideOf(folder.write("good.png", png.bytes()));
    EXPECT_EQ(GdiplusBitmapThumbnailingHelper::LoadErrorImage(path), nullptr);
    EXPECT_EQ(GdiplusBitmapThumbnailingHelper::GetThumbnailForOffline(path), nullptr);
    EXPECT_EQ(GdiplusBitmapThumbnailingHelper::LoadErrorImage(L""), nullptr);
}

} // namespace KestoThumbnailer
