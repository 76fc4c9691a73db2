#include "platform/FrameCodecLib.h"
#include "platform/KestoRenderLib.h"
#include "support/GdiplusUser.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <array>

namespace {

using FrameCodecLib::Bitmap;
using KestoRenderLib::MetaBitmap;

/// What a test sees of a frame, also once it is gone.
struct FrameState {
    bool canLock = true;
    bool isLocked = false;
    bool isAlive = true;
};

/// Two pixels in two rows of 8 bytes.
class WatchedFrame : public Bitmap {
public:
    explicit WatchedFrame(FrameState& watched)
        : state(watched) {}
    ~WatchedFrame() override { state.isAlive = false; }

    int GetWidth() const override { return 1; }
    int GetHeight() const override { return 2; }
    int GetStride() const override { return 8; }
    bool Lock() override { return state.isLocked = state.canLock; }
    unsigned char* GetPixels() override { return state.isLocked ? pixels.data() : nullptr; }
    void Unlock() override { state.isLocked = false; }

    std::array<unsigned char, 16> pixels{1, 2, 3, 255, 0, 0, 0, 0, 4, 5, 6, 255};

private:
    FrameState& state;
};

} // namespace

TEST(FrameCodecReference, SharesThePixelsOfTheFrame) {
    FrameState state;
    const auto frame = boost::make_shared<WatchedFrame>(state);
    const auto bitmap = MetaBitmap::CreateReferenceToFrameCodecLibBitmap(frame);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->GetWidth(), 1);
    EXPECT_EQ(bitmap->GetHeight(), 2);
    EXPECT_EQ(bitmap->GetStride(), 8);
    EXPECT_EQ(bitmap->GetPixels(), frame->pixels.data());
}

TEST(FrameCodecReference, IsAGdiplusBitmapOfTheSamePixels) {
    const TestSupport::GdiplusUser gdiplus;
    FrameState state;
    const auto bitmap =
        MetaBitmap::CreateReferenceToFrameCodecLibBitmap(boost::make_shared<WatchedFrame>(state));
    ASSERT_TRUE(bitmap);
    const auto picture = bitmap->AsGdiplusBitmap();
    EXPECT_EQ(TestSupport::pixelOf(*picture, 0, 0), 0xFF030201U);
    EXPECT_EQ(TestSupport::pixelOf(*picture, 0, 1), 0xFF060504U);
}

TEST(FrameCodecReference, KeepsTheFrameLockedAndAliveAsLongAsItLives) {
    FrameState state;
    auto bitmap = MetaBitmap::CreateReferenceToFrameCodecLibBitmap(boost::make_shared<WatchedFrame>(state));
    EXPECT_TRUE(state.isAlive);
    EXPECT_TRUE(state.isLocked);
    bitmap.reset();
    EXPECT_FALSE(state.isLocked);
    EXPECT_FALSE(state.isAlive);
}

TEST(FrameCodecReference, OfNoFrameIsEmpty) {
    EXPECT_FALSE(MetaBitmap::CreateReferenceToFrameCodecLibBitmap({}));
}

TEST(FrameCodecReference, OfAFrameThatCantBeLockedIsEmpty) {
    FrameState state{.canLock = false};
    EXPECT_FALSE(MetaBitmap::CreateReferenceToFrameCodecLibBitmap(boost::make_shared<WatchedFrame>(state)));
    EXPECT_FALSE(state.isAlive);
}
