#include "libs/FrameCodecLib/NumberedFrames.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace FrameCodecLib {
namespace {

using TestSupport::readFile;
using TestSupport::TempFolder;

struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> rows;

    std::uint32_t& at(int x, int y) { return rows[static_cast<std::size_t>(y * width + x)]; }
};

Pixels pixelsOf(const std::string& path) {
    const auto decoder = openDecoder(path);
    const auto frame = decoder ? frameAt(*decoder, Time(1, 5)) : nullptr;
    if (!frame || !frame->Lock())
        return {};
    Pixels pixels = {frame->GetWidth(), frame->GetHeight(), {}};
    pixels.rows.resize(static_cast<std::size_t>(pixels.width * pixels.height));
    for (int y = 0; y < pixels.height; ++y)
        std::memcpy(&pixels.at(0, y), frame->GetPixels() + y * frame->GetStride(),
                    static_cast<std::size_t>(pixels.width) * 4);
    return pixels;
}

/// ISO/IEC 14496-12, 8.3.2: the matrix of the track's header, of which only a, b, c, d count.
std::string withMatrix(std::string file, const std::array<int, 4>& matrix) {
    constexpr std::size_t fromTypeToMatrix = 44;
    const std::array<std::size_t, 4> places = {0, 4, 12, 16};
    const std::size_t header = file.find("tkhd");
    for (std::size_t i = 0; i < matrix.size(); ++i) {
        const auto value = static_cast<std::uint32_t>(matrix[i] * 0x10000);
        for (std::size_t byte = 0; byte < 4; ++byte)
            file[header + fromTypeToMatrix + places[i] + byte] =
                static_cast<char>(value >> (24 - 8 * byte) & 0xFFU);
    }
    return file;
}

/// a, b, c, d: a point goes to x' = a x + c y, y' = b x + d y, and the picture is moved back into view.
class Turn : public testing::TestWithParam<std::array<int, 4>> {};

TEST_P(Turn, IsAppliedAsTheMatrixSays) {
    const auto& [a, b, c, d] = GetParam();
    const TempFolder folder;
    Pixels lying = pixelsOf(videoPath("h264.mp4"));
    Pixels shown =
        pixelsOf(folder.write("turned.mp4", withMatrix(readFile(videoPath("h264.mp4")), GetParam())));
    ASSERT_EQ(lying.width, 128);
    ASSERT_EQ(shown.width, a != 0 ? 128 : 96);
    ASSERT_EQ(shown.height, a != 0 ? 96 : 128);
    int different = 0;
    for (int y = 0; y < lying.height; ++y)
        for (int x = 0; x < lying.width; ++x) {
            const int toX = a * x + c * y + (a + c < 0 ? shown.width - 1 : 0);
            const int toY = b * x + d * y + (b + d < 0 ? shown.height - 1 : 0);
            different += shown.at(toX, toY) != lying.at(x, y) ? 1 : 0;
        }
    EXPECT_EQ(different, 0);
}

INSTANTIATE_TEST_SUITE_P(Upright, Turn,
                         testing::Values(std::array{1, 0, 0, 1}, std::array{0, 1, -1, 0},
                                         std::array{-1, 0, 0, -1}, std::array{0, -1, 1, 0}));
INSTANTIATE_TEST_SUITE_P(Mirrored, Turn,
                         testing::Values(std::array{-1, 0, 0, 1}, std::array{0, 1, 1, 0},
                                         std::array{1, 0, 0, -1}, std::array{0, -1, -1, 0}));

void expectShape(const std::string& path, int width, int height) {
    const auto decoder = openDecoder(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->GetDisplayWidth(), width);
    EXPECT_EQ(decoder->GetDisplayHeight(), height);
    const auto frame = frameAt(*decoder, Time(1, 5));
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->GetWidth(), width);
    EXPECT_EQ(frame->GetHeight(), height);
    EXPECT_EQ(numberOf(*frame), 5);
}

TEST(PixelAspect, MakesPicturesOfWidePixelsWider) {
    expectShape(videoPath("wide-pixels.mp4"), 171, 96);
}

TEST(PixelAspect, MakesPicturesOfTallPixelsHigher) {
    expectShape(videoPath("tall-pixels.mp4"), 128, 128);
}

TEST(PixelAspect, IsReadFromTheBitstreamWhereTheContainerTellsNone) {
    const TempFolder folder;
    std::string file = readFile(videoPath("wide-pixels.mp4"));
    file.replace(file.find("pasp"), 4, "skip");
    // The size at which the track's header would have it shown, as 16.16: the coded one.
    file.replace(file.find("tkhd") + 80, 4, std::string{'\0', '\x80', '\0', '\0'});
    expectShape(folder.write("no-pasp.mp4", file), 171, 96);
}

TEST(PixelAspect, IsTurnedWithThePicture) {
    const TempFolder folder;
    const std::string file = withMatrix(readFile(videoPath("wide-pixels.mp4")), {0, 1, -1, 0});
    const auto decoder = openDecoder(folder.write("turned.mp4", file));
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->GetDisplayWidth(), 96);
    EXPECT_EQ(decoder->GetDisplayHeight(), 171);
}

TEST(Size, MayBeOdd) {
    expectShape(videoPath("odd.mp4"), 127, 95);
}

TEST(OutputSize, ScalesWhatIsDelivered) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder && decoder->SetOutputSize(40, 30));
    const auto frame = frameAt(*decoder, Time(1, 5));
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->GetWidth(), 40);
    EXPECT_EQ(frame->GetHeight(), 30);
    EXPECT_EQ(numberOf(*frame), 5);
}

TEST(OutputSize, MayBeAFractionOrAnyOtherPartOfTheDisplaySize) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    for (const auto& [width, height] :
         {std::array{32, 24}, {30, 24}, {32, 23}, {31, 21}, {60, 24}, {32, 48}}) {
        ASSERT_TRUE(decoder->SetOutputSize(width, height));
        const auto frame = frameAt(*decoder, Time(47, 25));
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->GetWidth(), width);
        EXPECT_EQ(frame->GetHeight(), height);
        EXPECT_EQ(numberOf(*frame), 47);
    }
}

TEST(OutputSize, MayBeOnePixel) {
    for (const char* file : {"h264.mp4", "odd.mp4", "bars-10-bt709-tv.mp4", "alpha.mov"}) {
        const auto decoder = openDecoder(videoPath(file));
        ASSERT_TRUE(decoder && decoder->SetOutputSize(1, 1));
        const auto frame = frameAt(*decoder, 0);
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->GetWidth(), 1);
        EXPECT_EQ(frame->GetHeight(), 1);
    }
}

TEST(OutputSize, MayChangeBetweenFramesOfTheSameTime) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    for (const int width : {128, 64, 256}) {
        ASSERT_TRUE(decoder->SetOutputSize(width, width * 3 / 4));
        const auto frame = frameAt(*decoder, Time(1, 5));
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->GetWidth(), width);
        EXPECT_EQ(numberOf(*frame), 5);
    }
}

TEST(OutputSize, OfNothingIsTheDisplaySize) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder && decoder->SetOutputSize(40, 30) && decoder->SetOutputSize(0, 0));
    EXPECT_EQ(frameAt(*decoder, 0)->GetWidth(), 128);
}

TEST(OutputSize, IsRefusedBelowOneAndBeyondTheBudget) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    EXPECT_FALSE(decoder->SetOutputSize(-1, 10));
    EXPECT_FALSE(decoder->SetOutputSize(10, 0));
    EXPECT_FALSE(decoder->SetOutputSize(100'000, 100'000));
    EXPECT_EQ(frameAt(*decoder, 0)->GetWidth(), 128);
}

} // namespace
} // namespace FrameCodecLib
