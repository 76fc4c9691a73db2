#include "libs/FrameCodecLib/NumberedFrames.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>

#include <sys/stat.h>

namespace FrameCodecLib {
namespace {

using TestSupport::readFile;
using TestSupport::TempFolder;

TEST(Decoder, TellsShapeDurationAndRate) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->GetDisplayWidth(), 128);
    EXPECT_EQ(decoder->GetDisplayHeight(), 96);
    EXPECT_EQ(decoder->GetDuration(), Time(90, 25));
    EXPECT_EQ(decoder->GetFrameRate(), Time(25));
}

TEST(Decoder, TellsWhenTheFrameIsShown) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    FrameTiming timing;
    const std::unique_ptr<Bitmap> key(decoder->GetFrameAtTime(Time(30, 25), timing, 0));
    EXPECT_EQ(timing.start, Time(30, 25));
    EXPECT_EQ(timing.end, Time(31, 25));
    EXPECT_TRUE(timing.isKeyFrame);
    const std::unique_ptr<Bitmap> other(decoder->GetFrameAtTime(Time(147, 100), timing, 0));
    EXPECT_EQ(timing.start, Time(36, 25));
    EXPECT_EQ(timing.end, Time(37, 25));
    EXPECT_FALSE(timing.isKeyFrame);
}

TEST(Decoder, LeavesTheTimingAloneWithoutAFrame) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    FrameTiming timing = {7, 8, true};
    EXPECT_EQ(decoder->GetFrameAtTime(0, timing, /*flags=*/1), nullptr);
    EXPECT_EQ(timing.start, Time(7));
    EXPECT_EQ(timing.end, Time(8));
}

TEST(Decoder, TakesAnyTime) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    constexpr __int64 most = std::numeric_limits<__int64>::max();
    EXPECT_EQ(numberAt(*decoder, Time(most)), 89);
    EXPECT_EQ(numberAt(*decoder, Time(-most)), 0);
    EXPECT_EQ(numberAt(*decoder, Time(most, most - 1)), 25);
    EXPECT_EQ(numberAt(*decoder, Time(most - 1, most)), 24);
}

TEST(Decoder, SharesThePixelsOfATimeThatIsAskedForAgain) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    const auto first = frameAt(*decoder, Time(50, 25));
    const auto between = frameAt(*decoder, Time(10, 25));
    const auto again = frameAt(*decoder, Time(101, 50));
    ASSERT_TRUE(first->Lock() && again->Lock() && between->Lock());
    EXPECT_EQ(first->GetPixels(), again->GetPixels());
    EXPECT_NE(first->GetPixels(), between->GetPixels());
}

TEST(Decoder, SharesThePixelsOfTheLastFrameAtAllTimesBehindIt) {
    for (const char* name : {"h264.mp4", "h264.ts", "mpeg4.avi", "one-key-frame.mp4"}) {
        const auto decoder = openDecoder(videoPath(name));
        ASSERT_TRUE(decoder) << name;
        const auto first = frameAt(*decoder, 100);
        const auto later = frameAt(*decoder, 300);
        const auto between = frameAt(*decoder, 200);
        ASSERT_TRUE(first->Lock() && later->Lock() && between->Lock()) << name;
        EXPECT_EQ(first->GetPixels(), later->GetPixels()) << name;
        EXPECT_EQ(first->GetPixels(), between->GetPixels()) << name;
    }
}

TEST(Decoder, ReadsTheStreamThatWasAskedFor) {
    EXPECT_TRUE(openDecoder(videoPath("with-audio.mp4"), 0));
    EXPECT_FALSE(openDecoder(videoPath("with-audio.mp4"), 1)) << "audio";
    EXPECT_FALSE(openDecoder(videoPath("with-audio.mp4"), 2)) << "no such stream";
    EXPECT_FALSE(openDecoder(videoPath("with-audio.mp4"), -2));
}

TEST(Decoder, FindsAFileWhateverItsLettersAndSeparators) {
    const TempFolder folder;
    folder.write("Clip.MP4", readFile(videoPath("h264.mp4")));
    EXPECT_TRUE(openDecoder((folder / "").string() + "\\clip.mp4"));
}

TEST(Frame, StaysReadableAfterItsDecoderIsGone) {
    auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    const auto frame = frameAt(*decoder, Time(33, 25));
    decoder.reset();
    EXPECT_EQ(numberOf(*frame), 33);
}

TEST(Frame, HasPixelsWhileItIsLocked) {
    const auto decoder = openDecoder(videoPath("h264.mp4"));
    ASSERT_TRUE(decoder);
    const auto frame = frameAt(*decoder, 0);
    EXPECT_EQ(frame->GetPixels(), nullptr);
    EXPECT_TRUE(frame->Lock());
    EXPECT_NE(frame->GetPixels(), nullptr);
    EXPECT_GE(frame->GetStride(), frame->GetWidth() * 4);
    frame->Unlock();
    EXPECT_EQ(frame->GetPixels(), nullptr);
}

TEST(BadFile, GivesNoDecoder) {
    const TempFolder folder;
    const std::string whole = readFile(videoPath("h264.mp4"));
    EXPECT_FALSE(openDecoder((folder / "missing.mp4").string()));
    EXPECT_FALSE(openDecoder((folder / "").string())) << "a folder";
    EXPECT_FALSE(openDecoder(""));
    EXPECT_FALSE(openDecoder(folder.write("empty.mp4", "")));
    EXPECT_FALSE(openDecoder(folder.write("text.mp4", "This is no video.\n")));
    EXPECT_FALSE(openDecoder(folder.write("text.txt", std::string(5000, 'a'))));
    EXPECT_FALSE(openDecoder(folder.write("no-index.mp4", whole.substr(0, whole.find("moov")))));
    EXPECT_FALSE(
        openDecoder(folder.write("list.m3u8", "#EXTM3U\n#EXTINF:1,\n/etc/passwd\n#EXT-X-ENDLIST\n")));
}

TEST(BadFile, ThatIsAPipeIsNotWaitedFor) {
    const TempFolder folder;
    const std::string pipe = (folder / "pipe.mp4").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(openDecoder(pipe));
}

TEST(BadFile, OfAbsurdSizeIsRefused) {
    const TempFolder folder;
    const std::string header = "YUV4MPEG2 W100000 H100000 F25:1 Ip A1:1 C420jpeg\nFRAME\n";
    EXPECT_FALSE(openDecoder(folder.write("large.y4m", header + std::string(1000, 'x'))));
}

TEST(UnfinishedFile, GivesItsLastGoodFrameForLaterTimes) {
    const TempFolder folder;
    const std::string whole = readFile(videoPath("fragmented.mp4"));
    const std::string path =
        folder.write("unfinished.mp4", whole.substr(0, whole.rfind("moof") - 4)).string();
    const auto decoder = openDecoder(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(numberAt(*decoder, Time(59, 25)), 59);
    EXPECT_EQ(numberAt(*decoder, Time(80, 25)), 59);
}

TEST(TruncatedFile, GivesTheRightFrameOrTheLastGoodOne) {
    const TempFolder folder;
    const std::string whole = readFile(videoPath("h264.ts"));
    for (std::size_t part = 1; part <= 8; ++part) {
        const auto decoder = openDecoder(folder.write("part.ts", whole.substr(0, whole.size() * part / 8)));
        ASSERT_TRUE(decoder) << part;
        const auto early = numberAt(*decoder, Time(3, 25));
        EXPECT_EQ(early, 3) << part;
        const auto last = numberAt(*decoder, Time(89, 25));
        ASSERT_TRUE(last) << part;
        EXPECT_NEAR(*last, 90 * static_cast<int>(part) / 8, 12);
    }
}

/// The same bytes each time, of which one in `distance` is another.
std::string damaged(std::string bytes, std::size_t distance) {
    std::mt19937 random(static_cast<unsigned>(distance)); // NOLINT: the same damage each time
    for (std::size_t i = 0; i < bytes.size() / distance; ++i)
        bytes[random() % bytes.size()] = static_cast<char>(random());
    return bytes;
}

TEST(DamagedFile, EndsInAFrameOrNone) {
    const TempFolder folder;
    for (const char* name :
         {"h264.mp4", "h264.mkv", "mpeg4.avi", "mpeg2.mpg", "h264.ts", "wmv2.wmv", "vp9.webm"})
        for (const std::size_t distance : {50, 400, 3000}) {
            const auto decoder =
                openDecoder(folder.write("damaged", damaged(readFile(videoPath(name)), distance)));
            if (!decoder)
                continue;
            for (const int frame : {0, 45, 89}) {
                const auto shown = frameAt(*decoder, Time(frame, 25));
                EXPECT_TRUE(!shown || shown->GetWidth() > 0);
            }
        }
}

} // namespace
} // namespace FrameCodecLib
