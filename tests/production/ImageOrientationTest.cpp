#include "production/ImageOrientation.h"

#include "support/GdiplusUser.h"
#include "support/JpegFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

namespace KestoThumbnailer {

namespace {

class ImageOrientation : public ::testing::Test {
protected:
    Gdiplus::RotateFlipType turnFor(int orientation) {
        const TestSupport::JpegFile file{.width = 8,
                                         .height = 8,
                                         .pixelAt = [](int, int) { return 0x808080U; },
                                         .orientation = orientation};
        const std::wstring path = TestSupport::wideOf(folder.write("tagged.jpg", file.bytes()));
        Gdiplus::Bitmap bitmap(path.c_str());
        return ReadOrientation(&bitmap);
    }

    TestSupport::TempFolder folder;
    TestSupport::GdiplusUser gdiplus;
};

} // namespace

TEST_F(ImageOrientation, EveryKnownValueHasItsTurn) {
    EXPECT_EQ(turnFor(1), Gdiplus::RotateNoneFlipNone);
    EXPECT_EQ(turnFor(2), Gdiplus::RotateNoneFlipX);
    EXPECT_EQ(turnFor(3), Gdiplus::Rotate180FlipNone);
    EXPECT_EQ(turnFor(4), Gdiplus::Rotate180FlipX);
    EXPECT_EQ(turnFor(5), Gdiplus::Rotate90FlipX);
    EXPECT_EQ(turnFor(6), Gdiplus::Rotate90FlipNone);
    EXPECT_EQ(turnFor(7), Gdiplus::Rotate270FlipX);
    EXPECT_EQ(turnFor(8), Gdiplus::Rotate270FlipNone);
}

TEST_F(ImageOrientation, AnUnknownValueTurnsNothing) {
    EXPECT_EQ(turnFor(9), Gdiplus::RotateNoneFlipNone);
    EXPECT_EQ(turnFor(255), Gdiplus::RotateNoneFlipNone);
}

TEST_F(ImageOrientation, APictureWithoutTheTagIsNotTurned) {
    EXPECT_EQ(turnFor(0), Gdiplus::RotateNoneFlipNone);
}

TEST_F(ImageOrientation, NullIsNotTurned) {
    EXPECT_EQ(ReadOrientation(nullptr), Gdiplus::RotateNoneFlipNone);
}

} // namespace KestoThumbnailer
