#include "framegrab/FrameGrabberUtil.h"

#include "framegrab/FrameGrabberSizeCalculator.h"
#include "framegrab/IFrameGrabber.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::MetaBitmap;
using KestoRenderLib::MetaBitmapHelper;
using KestoRenderLib::Size;

/// Toward zero. The ends lie equally far from zero, so that the fraction's sign can be turned.
__int64 ToMilliseconds(double seconds) {
    constexpr double unitsPerSecond = 1000.0;
    constexpr __int64 longest = std::numeric_limits<__int64>::max();
    const double milliseconds = seconds * unitsPerSecond;
    if (std::isnan(milliseconds))
        return 0;
    if (milliseconds >= static_cast<double>(longest))
        return longest;
    if (milliseconds <= -static_cast<double>(longest))
        return -longest;
    return static_cast<__int64>(milliseconds);
}

} // namespace

boost::shared_ptr<MetaBitmap> FrameGrabberUtil::scaleBitmapToFit(const boost::shared_ptr<MetaBitmap>& bitmap,
                                                                 const Size& requestedSize) {
    if (!bitmap)
        throw std::invalid_argument("FrameGrabberUtil::scaleBitmapToFit:cannot accept a null bitmap");
    const Size target = FrameGrabberSizeCalculator::calculateOutputSize(bitmap->Size(), requestedSize);
    if (target == bitmap->Size())
        return bitmap->CreateCopy();

    auto scaled = MetaBitmap::Create(target, KestoRenderLib::PixelFormat::Premultiplied32);
    // Deliberate: the message names one grabber, whichever calls.
    if (!MetaBitmapHelper::HighQualityScale(bitmap.get(), scaled.get()))
        throw std::runtime_error("MediaFrameGrabber: Error in MetaBitmapHelper::HighQualityScale");
    return scaled;
}

boost::shared_ptr<MetaBitmap> FrameAtSeconds(double seconds, IFrameGrabber& grabber) {
    constexpr __int64 millisecondsPerSecond = 1000;
    const boost::rational<__int64> time(ToMilliseconds(seconds), millisecondsPerSecond);
    return grabber.frameAtTime(time, /*keepOrientation=*/true, Size{0, 0});
}

} // namespace KestoThumbnailer
