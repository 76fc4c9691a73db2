#include "libs/FrameCodecLib/NumberedFrames.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace FrameCodecLib {
namespace {

/// Frames `first` to `last` of `rate` a second.
struct Clip {
    std::string file;
    int last = 89;
    Time rate = 25;
    int first = 0;
    /// Whether time stamps are exact; else only the middle of an interval is sure.
    bool isExact = true;
};

std::ostream& operator<<(std::ostream& out, const Clip& clip) {
    return out << clip.file;
}

std::string nameOf(const testing::TestParamInfo<Clip>& info) {
    std::string name = info.param.file;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '-' || c == '.'; }, '_');
    return name;
}

Time startOf(const Clip& clip, int frame) {
    return (frame - clip.first) / clip.rate;
}

Time middleOf(const Clip& clip, int frame) {
    return startOf(clip, frame) + 1 / (2 * clip.rate);
}

class ExactFrame : public testing::TestWithParam<Clip> {};

TEST_P(ExactFrame, IsFoundFrameByFrame) {
    const Clip& clip = GetParam();
    const auto decoder = openDecoder(videoPath(clip.file));
    ASSERT_TRUE(decoder);
    for (int frame = clip.first; frame <= clip.last; ++frame) {
        if (clip.isExact) {
            EXPECT_EQ(numberAt(*decoder, startOf(clip, frame)), frame);
        }
        EXPECT_EQ(numberAt(*decoder, middleOf(clip, frame)), frame);
    }
}

TEST_P(ExactFrame, IsTheSameInAnyOrderOfTimes) {
    const Clip& clip = GetParam();
    const auto decoder = openDecoder(videoPath(clip.file));
    ASSERT_TRUE(decoder);
    std::vector<int> frames(static_cast<std::size_t>(clip.last - clip.first) + 1);
    std::iota(frames.begin(), frames.end(), clip.first);
    std::shuffle(frames.begin(), frames.end(), std::mt19937(7)); // NOLINT: the same order each time
    frames.resize(std::min<std::size_t>(frames.size(), 25));
    for (const int frame : frames)
        EXPECT_EQ(numberAt(*decoder, middleOf(clip, frame)), frame);
}

TEST_P(ExactFrame, IsTheFirstBeforeTheStartAndTheLastAfterTheEnd) {
    const Clip& clip = GetParam();
    const auto decoder = openDecoder(videoPath(clip.file));
    ASSERT_TRUE(decoder);
    EXPECT_EQ(numberAt(*decoder, 1'000'000), clip.last);
    EXPECT_EQ(numberAt(*decoder, -1), clip.first);
    EXPECT_EQ(numberAt(*decoder, startOf(clip, clip.last) + Time(1, 2)), clip.last);
}

INSTANTIATE_TEST_SUITE_P(Codecs, ExactFrame,
                         testing::Values(Clip{"h264.mp4"}, Clip{"hevc.mp4"}, Clip{"mpeg4.mp4"},
                                         Clip{"mpeg4.avi"}, Clip{"packed.avi", 80}, Clip{"h264.avi"},
                                         Clip{"mjpeg.avi"}, Clip{"mpeg2.mpg"}, Clip{"noisy.mpg"},
                                         Clip{"noisy.ts"}, Clip{"mpeg2.ts"}, Clip{"h264.ts"},
                                         Clip{"h264.mkv"}, Clip{"h264.flv"}, Clip{"h264.h264"},
                                         Clip{"wmv2.wmv"}, Clip{"vp9.webm"}, Clip{"av1.mp4"},
                                         Clip{"prores.mov", 29}, Clip{"fields.ts"}, Clip{"fields.mpg"}),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(GroupsOfPictures, ExactFrame,
                         testing::Values(Clip{"open-gop.mp4"}, Clip{"open-gop.ts"}, Clip{"refresh.mp4"},
                                         Clip{"one-key-frame.mp4", 249}, Clip{"one-frame.mp4", 0}),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(Rates, ExactFrame,
                         testing::Values(Clip{"rate-24000-1001.mp4", 59, {24000, 1001}},
                                         Clip{"rate-30000-1001.mp4", 59, {30000, 1001}},
                                         Clip{"rate-30-1.mp4", 59, 30},
                                         Clip{"rate-60000-1001.mp4", 59, {60000, 1001}},
                                         Clip{"rate-60-1.mp4", 59, 60},
                                         Clip{"rate-24000-1001.mkv", 59, {24000, 1001}, 0, false},
                                         Clip{"rate-30000-1001.mkv", 59, {30000, 1001}, 0, false},
                                         Clip{"rate-60000-1001.mkv", 59, {60000, 1001}, 0, false}),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(TimeLines, ExactFrame,
                         testing::Values(Clip{"starts-late.mp4"}, Clip{"starts-late.mkv"},
                                         Clip{"empty-edit.mp4"}, Clip{"cut-front.mp4", 89, 25, 12},
                                         Clip{"with-audio.mp4"}, Clip{"with-audio.ts"}),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(NoIndex, ExactFrame,
                         testing::Values(Clip{"fragmented.mp4"}, Clip{"no-cues.mkv"}, Clip{"numbers-90.y4m"}),
                         nameOf);

TEST(VariableRate, FrameIsShownUntilTheNextOneStarts) {
    const auto decoder = openDecoder(videoPath("variable-rate.mp4"));
    ASSERT_TRUE(decoder);
    const auto startOfFrame = [](int frame) { return Time(frame * (frame + 3), 100); };
    for (int frame = 39; frame >= 0; --frame) {
        EXPECT_EQ(numberAt(*decoder, startOfFrame(frame)), frame);
        EXPECT_EQ(numberAt(*decoder, startOfFrame(frame + 1) - Time(1, 1'000'000)), frame);
    }
}

TEST(VariableRate, OfFramesThatGetShorterEachIsShownUntilTheNextOneStarts) {
    const auto decoder = openDecoder(videoPath("hastening-rate.mp4"));
    ASSERT_TRUE(decoder);
    const auto startOfFrame = [](int frame) { return Time(frame * (83 - frame), 100); };
    for (int frame = 0; frame < 39; ++frame) {
        EXPECT_EQ(numberAt(*decoder, startOfFrame(frame)), frame);
        EXPECT_EQ(numberAt(*decoder, startOfFrame(frame + 1) - Time(1, 1'000'000)), frame);
    }
}

TEST(VariableRate, EachFrameTellsWhenTheNextOneStarts) {
    for (const char* name : {"variable-rate.mp4", "hastening-rate.mp4"}) {
        const auto decoder = openDecoder(videoPath(name));
        ASSERT_TRUE(decoder);
        FrameTiming timing;
        for (int frame = 0; frame < 39; ++frame) {
            const Time asked = timing.end;
            delete decoder->GetFrameAtTime(asked, timing, 0);
            EXPECT_EQ(timing.start, asked) << name << ", frame " << frame;
        }
    }
}

TEST(EmptyEdit, DelaysTheVideoAgainstTheAudio) {
    const auto decoder = openDecoder(videoPath("empty-edit-audio.mp4"));
    ASSERT_TRUE(decoder);
    EXPECT_EQ(numberAt(*decoder, 0), 0);
    EXPECT_EQ(numberAt(*decoder, Time(3, 5)), 0);
    EXPECT_EQ(numberAt(*decoder, Time(3, 5) + Time(1, 25)), 1);
    EXPECT_EQ(numberAt(*decoder, Time(3, 5) + Time(7, 2)), 87);
}

} // namespace
} // namespace FrameCodecLib
