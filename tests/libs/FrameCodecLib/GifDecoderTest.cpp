#include "GifFrames.h"
#include "NumberedFrames.h"

#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <optional>

namespace FrameCodecLib {

namespace {

using TestSupport::GifFile;

class GifDecoding : public ::testing::Test {
protected:
    std::unique_ptr<Decoder> decoderOf(const std::vector<unsigned char>& bytes) const {
        return openDecoder(folder.write("a.gif", bytes));
    }
    std::unique_ptr<Decoder> decoderOf(const GifFile& file) const { return decoderOf(file.bytes()); }

    static std::string shownAt(Decoder& decoder, Time time) {
        return lettersOf(boost::shared_ptr<Bitmap>(frameAt(decoder, time)));
    }

    std::optional<TestSupport::GdiplusUser> gdiplus{std::in_place};
    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(GifDecoding, AFrameIsShownUntilBeforeItsEnd) {
    const auto decoder = decoderOf(threeColours());
    ASSERT_TRUE(decoder);
    EXPECT_EQ(shownAt(*decoder, 0), "r");
    EXPECT_EQ(shownAt(*decoder, Time(299'999'999, 1'000'000'000)), "r");
    EXPECT_EQ(shownAt(*decoder, Time(3, 10)), "g");
    EXPECT_EQ(shownAt(*decoder, Time(1, 2)), "b");
    EXPECT_EQ(shownAt(*decoder, Time(1, 3)), "g");
}

TEST_F(GifDecoding, OutsideTheOnePassThereAreItsFirstAndLastFrames) {
    const auto decoder = decoderOf(threeColours().loops(0));
    ASSERT_TRUE(decoder);
    EXPECT_EQ(shownAt(*decoder, -1), "r");
    EXPECT_EQ(shownAt(*decoder, 1), "b");
    EXPECT_EQ(shownAt(*decoder, Time(11, 10)), "b");
    EXPECT_EQ(shownAt(*decoder, 1'000'000'000'000), "b");
}

TEST_F(GifDecoding, TellsWhichFrameItGave) {
    const auto decoder = decoderOf(threeColours());
    ASSERT_TRUE(decoder);
    FrameTiming timing;
    const std::unique_ptr<Bitmap> frame(decoder->GetFrameAtTime(Time(2, 5), timing, 0));
    EXPECT_EQ(timing.start, Time(3, 10));
    EXPECT_EQ(timing.end, Time(1, 2));
}

TEST_F(GifDecoding, TellsSizeDurationAndRate) {
    const auto decoder = decoderOf(threeColours());
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->GetDisplayWidth(), 1);
    EXPECT_EQ(decoder->GetDisplayHeight(), 1);
    EXPECT_EQ(decoder->GetDuration(), Time(1));
    EXPECT_EQ(decoder->GetFrameRate(), Time(3));
}

TEST_F(GifDecoding, WhereNoFrameHasDrawnItIsTransparentAsTheLoaderTells) {
    const auto decoder = decoderOf(GifFile(3, 3, fourColours, b).frame({.left = 1, .top = 1}));
    ASSERT_TRUE(decoder);
    EXPECT_EQ(shownAt(*decoder, 0), "    k    ");
}

TEST_F(GifDecoding, ACutFileShowsWhatThereIs) {
    std::vector<unsigned char> bytes = GifFile(2, 2, fourColours).frame(fullOf(r, 2, 2)).bytes();
    bytes.resize(bytes.size() - 4); // codes of 9 bits: a clear code and three indices are left
    const auto decoder = decoderOf(bytes);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(shownAt(*decoder, 0), "rrr ");
}

TEST_F(GifDecoding, IsScaledToTheOutputSize) {
    const auto decoder = decoderOf(threeColours());
    ASSERT_TRUE(decoder && decoder->SetOutputSize(4, 2));
    EXPECT_EQ(shownAt(*decoder, 0), "rrrrrrrr");
    EXPECT_FALSE(decoder->SetOutputSize(0, 2));
    EXPECT_FALSE(decoder->SetOutputSize(1 << 20, 1 << 20));
    EXPECT_EQ(shownAt(*decoder, Time(1, 2)), "bbbbbbbb");
    ASSERT_TRUE(decoder->SetOutputSize(0, 0));
    EXPECT_EQ(shownAt(*decoder, 0), "r");
}

TEST_F(GifDecoding, HasOneStream) {
    const std::string path = folder.write("a.gif", threeColours().bytes());
    EXPECT_TRUE(openDecoder(path, 0));
    EXPECT_FALSE(openDecoder(path, 1));
}

TEST_F(GifDecoding, FlagsAreRefused) {
    const auto decoder = decoderOf(threeColours());
    ASSERT_TRUE(decoder);
    FrameTiming timing;
    EXPECT_EQ(decoder->GetFrameAtTime(0, timing, 1), nullptr);
}

TEST_F(GifDecoding, WithoutGdiplusTheEngineDecodes) {
    gdiplus.reset();
    const auto decoder = decoderOf(threeColours());
    ASSERT_TRUE(decoder);
    EXPECT_EQ(shownAt(*decoder, Time(3, 10)), "g");
}

} // namespace FrameCodecLib
