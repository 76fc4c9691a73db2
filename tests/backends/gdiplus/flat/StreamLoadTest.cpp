#include "backends/gdiplus/flat/PictureFiles.h"
#include "platform/Stream.h"
#include "support/PngFile.h"

#include <memory>

using namespace Gdiplus;
using TestSupport::PngFile;

namespace {

struct Releaser {
    void operator()(IStream* stream) const { stream->Release(); }
    void operator()(GpBitmap* bitmap) const { DllExports::GdipDisposeImage(bitmap); }
};
using StreamPtr = std::unique_ptr<IStream, Releaser>;
using BitmapPtr = std::unique_ptr<GpBitmap, Releaser>;

class StreamLoad : public ::testing::Test {
private:
    TestSupport::GdiplusUser user;
};

StreamPtr streamOver(const std::vector<unsigned char>& bytes) {
    return StreamPtr(SHCreateMemStream(bytes.data(), static_cast<UINT>(bytes.size())));
}

std::uint32_t colourOf(int x, int y) {
    return 0xFF000000U | static_cast<std::uint32_t>(x * 5 << 16 | y * 3 << 8 | (x ^ y));
}

std::vector<unsigned char> png() {
    return PngFile{.width = 40, .height = 30, .pixelAt = colourOf}.bytes();
}

BitmapPtr open(IStream& stream) {
    GpBitmap* bitmap = nullptr;
    EXPECT_EQ(DllExports::GdipCreateBitmapFromStream(&stream, &bitmap), Ok);
    return BitmapPtr(bitmap);
}

Status statusOf(const std::vector<unsigned char>& bytes) {
    GpBitmap* bitmap = nullptr;
    const Status status = DllExports::GdipCreateBitmapFromStream(streamOver(bytes).get(), &bitmap);
    EXPECT_EQ(bitmap, nullptr);
    return status;
}

ARGB pixelOf(GpBitmap& bitmap, int x, int y) {
    ARGB colour = 0;
    EXPECT_EQ(DllExports::GdipBitmapGetPixel(&bitmap, x, y, &colour), Ok);
    return colour;
}

} // namespace

TEST_F(StreamLoad, GivesTheStreamsPicturePixelByPixel) {
    const StreamPtr stream = streamOver(png());
    const BitmapPtr bitmap = open(*stream);
    ASSERT_TRUE(bitmap);
    UINT width = 0;
    EXPECT_EQ(DllExports::GdipGetImageWidth(bitmap.get(), &width), Ok);
    EXPECT_EQ(width, 40U);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(pixelOf(*bitmap, x, y), colourOf(x, y)) << x << ", " << y;
}

TEST_F(StreamLoad, BeginsAtTheStreamsStartWhereverItStands) {
    const StreamPtr stream = streamOver(png());
    ASSERT_EQ(stream->Seek({7}, STREAM_SEEK_SET, nullptr), S_OK);
    const BitmapPtr bitmap = open(*stream);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(pixelOf(*bitmap, 3, 4), colourOf(3, 4));
}

TEST_F(StreamLoad, NeedsTheStreamNoLongerThanTheCall) {
    StreamPtr stream = streamOver(png());
    const BitmapPtr bitmap = open(*stream);
    ASSERT_TRUE(bitmap);
    ASSERT_EQ(stream->SetSize({0}), S_OK);
    EXPECT_EQ(stream->AddRef(), 2U) << "a reference is kept";
    stream->Release();
    stream.reset();
    EXPECT_EQ(pixelOf(*bitmap, 39, 29), colourOf(39, 29));
}

TEST_F(StreamLoad, HasTheStatusesOfFiles) {
    EXPECT_EQ(statusOf({}), UnknownImageFormat);
    EXPECT_EQ(statusOf({'t', 'e', 'x', 't'}), UnknownImageFormat);
    auto half = png();
    half.resize(half.size() / 2);
    const BitmapPtr bitmap = open(*streamOver(half));
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(DllExports::GdipImageForceValidation(bitmap.get()), Aborted);
}

TEST_F(StreamLoad, RefusesNullPointers) {
    GpBitmap* bitmap = nullptr;
    EXPECT_EQ(DllExports::GdipCreateBitmapFromStream(nullptr, &bitmap), InvalidParameter);
    EXPECT_EQ(DllExports::GdipCreateBitmapFromStream(streamOver(png()).get(), nullptr), InvalidParameter);
}

TEST(StreamLoadBeforeStartup, IsNotInitialized) {
    GpBitmap* bitmap = nullptr;
    EXPECT_EQ(DllExports::GdipCreateBitmapFromStream(streamOver(png()).get(), &bitmap),
              GdiplusNotInitialized);
}
