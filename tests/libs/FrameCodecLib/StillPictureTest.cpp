#include "libs/FrameCodecLib/NumberedFrames.h"
#include "support/GdiplusUser.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace FrameCodecLib {
namespace {

class StillPicture : public testing::Test {
protected:
    StillPicture() {
        // Red above, half transparent blue below.
        const TestSupport::PngFile picture = {
            .width = 6, .height = 4, .pixelAt = [](int, int y) { return y < 2 ? 0xFFFF0000U : 0x800000FFU; }};
        path = folder.write("still.png", picture.bytes());
    }

    static std::uint32_t pixelAt(Bitmap& frame, int x, int y) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, frame.GetPixels() + y * frame.GetStride() + x * 4, sizeof pixel);
        return pixel;
    }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
    std::string path;
};

} // namespace

TEST_F(StillPicture, IsOneFrameAtAllTimes) {
    const auto decoder = openDecoder(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->GetDisplayWidth(), 6);
    EXPECT_EQ(decoder->GetDisplayHeight(), 4);
    for (const int second : {0, 7, -3}) {
        const auto frame = frameAt(*decoder, second);
        ASSERT_TRUE(frame && frame->Lock());
        EXPECT_EQ(pixelAt(*frame, 2, 0), 0xFFFF0000U);
        EXPECT_EQ(pixelAt(*frame, 2, 3), 0x80000080U); // premultiplied
    }
}

TEST_F(StillPicture, IsScaledToTheOutputSize) {
    const auto decoder = openDecoder(path);
    ASSERT_TRUE(decoder && decoder->SetOutputSize(3, 2));
    const auto frame = frameAt(*decoder, 0);
    ASSERT_TRUE(frame && frame->Lock());
    EXPECT_EQ(frame->GetWidth(), 3);
    EXPECT_EQ(frame->GetHeight(), 2);
    EXPECT_GT(pixelAt(*frame, 1, 0) >> 24, pixelAt(*frame, 1, 1) >> 24);
    EXPECT_FALSE(decoder->SetOutputSize(0, 2));
    EXPECT_FALSE(decoder->SetOutputSize(-1, -1));
    EXPECT_FALSE(decoder->SetOutputSize(1 << 20, 1 << 20));
}

TEST_F(StillPicture, HasOneStream) {
    const std::unique_ptr<DecoderFactory> factory(DecoderFactory::Create());
    const std::unique_ptr<Decoder> first(factory->CreateDecoder(path, 0, 1));
    const std::unique_ptr<Decoder> second(factory->CreateDecoder(path, 1, 1));
    EXPECT_TRUE(first);
    EXPECT_FALSE(second);
}

TEST_F(StillPicture, GivesNoFrameWhereItsFileIsDamaged) {
    const std::string whole = TestSupport::readFile(path);
    const std::string cut = folder.write("cut.png", std::string_view(whole).substr(0, whole.size() - 30));
    const auto decoder = openDecoder(cut);
    EXPECT_FALSE(decoder && frameAt(*decoder, 0));
}

} // namespace FrameCodecLib
