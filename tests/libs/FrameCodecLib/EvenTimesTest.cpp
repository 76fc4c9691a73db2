#include "libs/FrameCodecLib/NumberedFrames.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace FrameCodecLib {
namespace {

/// Of frames that are shown for a 25th of a second.
Time middleOf(int frame) {
    return Time(2 * frame + 1, 50);
}

std::string nameOf(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '-' || c == '.'; }, '_');
    return name;
}

/// A decoder that is asked for evenly spaced times decodes what it expects to be asked for next, no more.
class EvenTimes : public testing::TestWithParam<const char*> {
protected:
    std::unique_ptr<Decoder> decoder = openDecoder(videoPath(GetParam()));
};

TEST_P(EvenTimes, GiveTheFramesThatCoverThem) {
    ASSERT_TRUE(decoder);
    for (const int step : {2, 3, 7, 31})
        for (int frame = 0; frame < 90; frame += step)
            EXPECT_EQ(numberAt(*decoder, middleOf(frame)), frame) << "every " << step;
}

TEST_P(EvenTimes, ThatGoOnUnevenlyGiveTheRightFrames) {
    for (int expected = 22; expected < 28; ++expected) {
        const auto fresh = openDecoder(videoPath(GetParam()));
        ASSERT_TRUE(fresh);
        for (const int frame : {0, 7, 14, 21, expected, expected + 1, expected + 3})
            EXPECT_EQ(numberAt(*fresh, middleOf(frame)), frame);
    }
}

TEST_P(EvenTimes, TellTheTimingOfEachFrame) {
    const auto inOnePass = openDecoder(videoPath(GetParam()));
    ASSERT_TRUE(decoder && inOnePass);
    std::vector<FrameTiming> timings(85);
    for (int frame = 0; frame < 85; ++frame)
        delete inOnePass->GetFrameAtTime(middleOf(frame), timings[static_cast<std::size_t>(frame)], 0);
    for (int frame = 0; frame < 85; frame += 4) {
        FrameTiming timing;
        delete decoder->GetFrameAtTime(middleOf(frame), timing, 0);
        EXPECT_EQ(timing.start, timings[static_cast<std::size_t>(frame)].start);
        EXPECT_EQ(timing.end, timings[static_cast<std::size_t>(frame)].end);
    }
}

TEST_P(EvenTimes, GiveThePicturesOfOnePass) {
    const auto inOnePass = openDecoder(videoPath(GetParam()));
    ASSERT_TRUE(decoder && inOnePass);
    for (int frame = 0; frame < 85; ++frame) {
        const auto whole = frameAt(*inOnePass, middleOf(frame));
        if (frame % 12 != 0)
            continue;
        const auto alone = frameAt(*openDecoder(videoPath(GetParam())), middleOf(frame));
        const auto even = frameAt(*decoder, middleOf(frame));
        ASSERT_TRUE(whole && whole->Lock() && alone && alone->Lock() && even && even->Lock());
        const auto bytes =
            static_cast<std::size_t>(whole->GetStride()) * static_cast<std::size_t>(whole->GetHeight());
        EXPECT_EQ(std::memcmp(whole->GetPixels(), alone->GetPixels(), bytes), 0) << frame;
        EXPECT_EQ(std::memcmp(whole->GetPixels(), even->GetPixels(), bytes), 0) << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, EvenTimes,
                         testing::Values("h264.mp4", "h264.mkv", "h264.ts", "hevc.mp4", "mpeg2.ts",
                                         "vp9.webm", "open-gop.mp4", "one-key-frame.mp4"),
                         nameOf);

} // namespace
} // namespace FrameCodecLib
