#include "backends/gdiplus/codecs/JpegBuilder.h"
#include "backends/gdiplus/codecs/PngBuilder.h"
#include "backends/gdiplus/flat/PictureFiles.h"
#include "support/JpegFile.h"

#include <cstring>

using namespace Gdiplus;
using namespace GdiplusBackend;
using TestSupport::JpegFile;

namespace {

class Property : public PictureFiles {
protected:
    static constexpr UINT orientationSize = sizeof(PropertyItem) + 2;

    static std::vector<unsigned char> turnedJpeg(int orientation) {
        return JpegFile{.width = 16,
                        .height = 8,
                        .pixelAt = [](int, int) { return 0x808080U; },
                        .orientation = orientation}
            .bytes();
    }

    /// The item and its value in one block, as the caller lays it out; empty when it can't be had.
    static std::vector<std::uint64_t> orientationItem(Bitmap& bitmap) {
        std::vector<std::uint64_t> block((orientationSize + 7) / 8);
        if (bitmap.GetPropertyItem(PropertyTagOrientation, orientationSize,
                                   reinterpret_cast<PropertyItem*>(block.data())) != Ok)
            return {};
        return block;
    }

    /// -1 without one.
    static int orientationOf(Bitmap& bitmap) {
        const auto block = orientationItem(bitmap);
        if (block.empty())
            return -1;
        std::uint16_t value = 0;
        std::memcpy(&value, reinterpret_cast<const PropertyItem*>(block.data())->value, sizeof value);
        return value;
    }
};

} // namespace

TEST_F(Property, OrientationHas26BytesWithItsItem) {
    const auto bitmap = open(turnedJpeg(6));
    EXPECT_EQ(bitmap->GetPropertyItemSize(PropertyTagOrientation), 26U);
}

TEST_F(Property, OrientationIsOneShortRightBehindItsItem) {
    const auto bitmap = open(turnedJpeg(6));
    const auto block = orientationItem(*bitmap);
    ASSERT_FALSE(block.empty());
    const auto* item = reinterpret_cast<const PropertyItem*>(block.data());
    EXPECT_EQ(item->id, PropertyTagOrientation);
    EXPECT_EQ(item->type, PropertyTagTypeShort);
    EXPECT_EQ(item->length, 2U);
    EXPECT_EQ(item->value, item + 1);
}

TEST_F(Property, OrientationIsToldAsItIsAlsoIfItMeansNothing) {
    for (const int orientation : {1, 2, 3, 4, 5, 6, 7, 8, 9})
        EXPECT_EQ(orientationOf(*open(turnedJpeg(orientation))), orientation);
}

TEST_F(Property, OrientationTurnsNothingOnLoading) {
    const auto bitmap = open(turnedJpeg(6));
    EXPECT_EQ(bitmap->GetWidth(), 16U);
    EXPECT_EQ(bitmap->GetHeight(), 8U);
}

TEST_F(Property, IsNotFoundWhereTheFileHasNone) {
    const auto bitmap = open(turnedJpeg(0));
    EXPECT_EQ(bitmap->GetPropertyItemSize(PropertyTagOrientation), 0U);
    EXPECT_EQ(bitmap->GetLastStatus(), PropertyNotFound);
    PropertyItem item = {};
    EXPECT_EQ(bitmap->GetPropertyItem(PropertyTagOrientation, sizeof item, &item), PropertyNotFound);
    Bitmap drawn(2, 2);
    EXPECT_EQ(drawn.GetPropertyItem(PropertyTagOrientation, sizeof item, &item), PropertyNotFound);
}

TEST_F(Property, OfAWrongSizeIsAnInvalidParameterAndNothingIsWritten) {
    const auto bitmap = open(turnedJpeg(6));
    std::array<std::uint64_t, 8> block = {};
    auto* item = reinterpret_cast<PropertyItem*>(block.data());
    for (const UINT size : {0U, orientationSize - 1, orientationSize + 1})
        EXPECT_EQ(bitmap->GetPropertyItem(PropertyTagOrientation, size, item), InvalidParameter);
    EXPECT_EQ(block, (std::array<std::uint64_t, 8>{}));
    EXPECT_EQ(bitmap->GetPropertyItem(PropertyTagOrientation, orientationSize, nullptr), InvalidParameter);
    EXPECT_EQ(DllExports::GdipGetPropertyItemSize(nullptr, PropertyTagOrientation, nullptr),
              InvalidParameter);
}

TEST_F(Property, StaysWhenThePictureIsDecodedDrawnAndTurned) {
    const auto bitmap = open(turnedJpeg(8));
    ASSERT_FALSE(drawn(*bitmap, 4, 4).empty());
    ASSERT_EQ(bitmap->RotateFlip(Rotate90FlipNone), Ok);
    ASSERT_EQ(bitmap->ForceValidation(), Ok);
    ASSERT_FALSE(pixelsOf(*bitmap).empty());
    EXPECT_EQ(orientationOf(*bitmap), 8);
}

TEST_F(Property, PassesToClonesWhetherOrNotThePictureIsDecoded) {
    const auto encoded = open(turnedJpeg(8));
    const auto decoded = openDecoded(turnedJpeg(8));
    for (Bitmap* bitmap : {encoded.get(), decoded.get()}) {
        const std::unique_ptr<Bitmap> whole(bitmap->Clone(0, 0, 16, 8, PixelFormat32bppARGB));
        const std::unique_ptr<Bitmap> part(bitmap->Clone(2, 2, 4, 4, PixelFormat24bppRGB));
        EXPECT_EQ(orientationOf(*whole), 8);
        EXPECT_EQ(orientationOf(*part), 8);
    }
}
