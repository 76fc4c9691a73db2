#include "libs/FrameCodecLib/NumberedFrames.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

namespace FrameCodecLib {
namespace {

TEST(ExactFrame, IsTheOneWhoseIntervalCoversTheTime) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    for (int frame = 0; frame < 90; ++frame) {
        EXPECT_EQ(numberAt(*decoder, Time(frame, 25)), frame);
        EXPECT_EQ(numberAt(*decoder, Time(2 * frame + 1, 50)), frame);
    }
}

} // namespace
} // namespace FrameCodecLib
