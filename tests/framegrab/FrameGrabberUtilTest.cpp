#include "framegrab/FrameGrabberUtil.h"

#include "framegrab/IFrameGrabber.h"
#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::MetaBitmap;
using KestoRenderLib::Size;
using Frame = boost::shared_ptr<MetaBitmap>;
using Time = boost::rational<__int64>;
using TestSupport::pixelOf;

constexpr Gdiplus::ARGB red = 0xFFFF0000;
constexpr Gdiplus::ARGB blue = 0xFF0000FF;

Frame emptyFrame(int width, int height) {
    return MetaBitmap::Create({width, height}, KestoRenderLib::PixelFormat::Premultiplied32);
}

/// The upper half red, the lower half blue.
Frame redAboveBlue(int width, int height) {
    Frame frame = emptyFrame(width, height);
    const auto view = frame->AsGdiplusBitmap();
    const Gdiplus::SolidBrush upper{Gdiplus::Color(red)};
    const Gdiplus::SolidBrush lower{Gdiplus::Color(blue)};
    Gdiplus::Graphics graphics(view.get());
    graphics.FillRectangle(&upper, 0, 0, width, height / 2);
    graphics.FillRectangle(&lower, 0, height / 2, width, height - height / 2);
    return frame;
}

template <typename Error>
std::string messageOf(const Frame& frame, Size requested) {
    try {
        FrameGrabberUtil::scaleBitmapToFit(frame, requested);
        return "nothing is thrown";
    } catch (const Error& error) {
        return error.what();
    }
}

class ScaleBitmapToFit : public ::testing::Test {
protected:
    TestSupport::GdiplusUser gdiplus;
};

class RecordingGrabber final : public IFrameGrabber {
public:
    struct Request {
        Time time;
        bool keepOrientation;
        Size size;
    };

    Frame frameAtTime(Time time, bool keepOrientation, Size size) override {
        request = {time, keepOrientation, size};
        return frame;
    }

    std::optional<Request> request;
    Frame frame;
};

Time askedTime(double seconds) {
    RecordingGrabber grabber;
    FrameAtSeconds(seconds, grabber);
    return grabber.request.value().time;
}

} // namespace

TEST_F(ScaleBitmapToFit, AFrameIsShrunkIntoTheBox) {
    const Frame scaled = FrameGrabberUtil::scaleBitmapToFit(redAboveBlue(64, 32), {16, 16});
    ASSERT_TRUE(scaled);
    EXPECT_EQ(scaled->Size(), (Size{16, 8}));
    const auto view = scaled->AsGdiplusBitmap();
    EXPECT_EQ(pixelOf(*view, 0, 0), red);
    EXPECT_EQ(pixelOf(*view, 15, 1), red);
    EXPECT_EQ(pixelOf(*view, 0, 6), blue);
    EXPECT_EQ(pixelOf(*view, 15, 7), blue);
}

TEST_F(ScaleBitmapToFit, AFrameIsEnlargedIntoTheBox) {
    const Frame scaled = FrameGrabberUtil::scaleBitmapToFit(redAboveBlue(8, 4), {32, 32});
    ASSERT_TRUE(scaled);
    EXPECT_EQ(scaled->Size(), (Size{32, 16}));
    const auto view = scaled->AsGdiplusBitmap();
    EXPECT_EQ(pixelOf(*view, 0, 0), red);
    EXPECT_EQ(pixelOf(*view, 31, 15), blue);
}

TEST_F(ScaleBitmapToFit, WithoutARequestACopyIsReturned) {
    const Frame frame = redAboveBlue(6, 4);
    const Frame copy = FrameGrabberUtil::scaleBitmapToFit(frame, {0, 0});
    ASSERT_TRUE(copy);
    EXPECT_NE(copy, frame);
    EXPECT_NE(copy->GetPixels(), frame->GetPixels());
    EXPECT_EQ(copy->Size(), (Size{6, 4}));
    EXPECT_EQ(pixelOf(*copy->AsGdiplusBitmap(), 5, 1), red);
    EXPECT_EQ(pixelOf(*copy->AsGdiplusBitmap(), 0, 2), blue);
}

TEST_F(ScaleBitmapToFit, AFrameThatFitsExactlyIsCopiedToo) {
    const Frame frame = redAboveBlue(6, 4);
    const Frame copy = FrameGrabberUtil::scaleBitmapToFit(frame, {6, 0});
    ASSERT_TRUE(copy);
    copy->AsGdiplusBitmap()->SetPixel(0, 0, Gdiplus::Color(blue));
    EXPECT_EQ(pixelOf(*frame->AsGdiplusBitmap(), 0, 0), red);
}

TEST_F(ScaleBitmapToFit, AnEmptyPointerIsRefused) {
    EXPECT_EQ(messageOf<std::invalid_argument>({}, {10, 10}),
              "FrameGrabberUtil::scaleBitmapToFit:cannot accept a null bitmap");
}

TEST_F(ScaleBitmapToFit, AnEmptyPointerIsToldBeforeANegativeRequest) {
    EXPECT_EQ(messageOf<std::invalid_argument>({}, {-1, -1}),
              "FrameGrabberUtil::scaleBitmapToFit:cannot accept a null bitmap");
}

TEST_F(ScaleBitmapToFit, ANegativeRequestIsRefused) {
    EXPECT_EQ(messageOf<std::invalid_argument>(emptyFrame(4, 4), {-1, 10}),
              "FrameGrabberSizeCalculator::calculateOutputSize: requestedSize cannot be negative");
}

TEST_F(ScaleBitmapToFit, TheMessageOfAFailureNamesTheMediaFrameGrabber) {
    // A result of 10 by 0 has nothing to scale into.
    EXPECT_EQ(messageOf<std::runtime_error>(emptyFrame(1000, 3), {10, 10}),
              "MediaFrameGrabber: Error in MetaBitmapHelper::HighQualityScale");
}

TEST(FrameAtSeconds, TheTimeIsCutToMillisecondsAndReduced) {
    const Time time = askedTime(1.2345);
    EXPECT_EQ(time.numerator(), 617);
    EXPECT_EQ(time.denominator(), 500);
}

TEST(FrameAtSeconds, TheTimeIsCutTowardZeroBelowZero) {
    EXPECT_EQ(askedTime(-1.2345), Time(-1234, 1000));
}

TEST(FrameAtSeconds, LessThanAMillisecondIsTimeZero) {
    const Time time = askedTime(0.0009);
    EXPECT_EQ(time.numerator(), 0);
    EXPECT_EQ(time.denominator(), 1);
}

TEST(FrameAtSeconds, TheFullSizeIsAskedForWithItsOrientation) {
    RecordingGrabber grabber;
    FrameAtSeconds(2, grabber);
    ASSERT_TRUE(grabber.request.has_value());
    EXPECT_TRUE(grabber.request->keepOrientation);
    EXPECT_EQ(grabber.request->size, (Size{0, 0}));
}

TEST(FrameAtSeconds, TheGrabbersFrameIsReturnedAsItIs) {
    RecordingGrabber grabber;
    grabber.frame = emptyFrame(3, 2);
    EXPECT_EQ(FrameAtSeconds(0, grabber), grabber.frame);
    grabber.frame.reset();
    EXPECT_FALSE(FrameAtSeconds(0, grabber));
}

TEST(FrameAtSeconds, ATimeBeyondTheRangeIsHeldAtItsEnd) {
    constexpr __int64 longest = std::numeric_limits<__int64>::max();
    EXPECT_EQ(askedTime(1e300), Time(longest, 1000));
    EXPECT_EQ(askedTime(-1e300), Time(-longest, 1000));
    EXPECT_EQ(askedTime(std::numeric_limits<double>::infinity()), Time(longest, 1000));
}

TEST(FrameAtSeconds, ATimeThatIsNoNumberIsTimeZero) {
    EXPECT_EQ(askedTime(std::numeric_limits<double>::quiet_NaN()), Time(0));
}

} // namespace KestoThumbnailer
