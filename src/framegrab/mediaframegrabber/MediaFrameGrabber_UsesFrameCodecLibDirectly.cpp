#include "framegrab/mediaframegrabber/MediaFrameGrabber_UsesFrameCodecLibDirectly.h"

#include "framegrab/FrameGrabberUtil.h"
#include "platform/FrameCodecLib.h"

#include <boost/make_shared.hpp>

namespace KestoThumbnailer {

namespace {

using FrameCodecLib::DecoderFactory;
using KestoRenderLib::MetaBitmap;
using KestoRenderLib::Size;

constexpr int decodersAtOnce = 1;

/// Keeps a frame's pixels readable. Null pixels when they can't be.
class LockedPixels {
public:
    explicit LockedPixels(FrameCodecLib::Bitmap& locked)
        : frame(locked)
        , isLocked(locked.Lock()) {}
    ~LockedPixels() {
        if (isLocked)
            frame.Unlock();
    }
    LockedPixels(const LockedPixels&) = delete;
    LockedPixels& operator=(const LockedPixels&) = delete;

    unsigned char* get() const { return isLocked ? frame.GetPixels() : nullptr; }

private:
    FrameCodecLib::Bitmap& frame;
    bool isLocked;
};

} // namespace

MediaFrameGrabber_UsesFrameCodecLibDirectly::MediaFrameGrabber_UsesFrameCodecLibDirectly(
    const std::string& fileName, int streamIndex) {
    const std::unique_ptr<DecoderFactory> factory(DecoderFactory::Create());
    decoder.reset(factory->CreateDecoder(fileName, streamIndex, decodersAtOnce));
}

MediaFrameGrabber_UsesFrameCodecLibDirectly::~MediaFrameGrabber_UsesFrameCodecLibDirectly() = default;

boost::shared_ptr<MetaBitmap>
MediaFrameGrabber_UsesFrameCodecLibDirectly::frameAtTime(boost::rational<__int64> time, bool keepOrientation,
                                                         Size size) {
    if (!decoder)
        return {};
    FrameCodecLib::FrameTiming ignored;
    const std::unique_ptr<FrameCodecLib::Bitmap> frame(decoder->GetFrameAtTime(time, ignored, /*flags=*/0));
    if (!frame)
        return {};
    const Size decoded{frame->GetWidth(), frame->GetHeight()};
    const LockedPixels pixels(*frame);
    if (!pixels.get())
        return {};

    auto bitmap = boost::make_shared<MetaBitmap>(decoded, frame->GetStride(),
                                                 KestoRenderLib::PixelFormat::Premultiplied32, pixels.get(),
                                                 /*takeOwnership=*/false);
    bitmap = FrameGrabberUtil::scaleBitmapToFit(bitmap, size);
    if (bitmap && !keepOrientation)
        bitmap->FlipY();
    return bitmap;
}

} // namespace KestoThumbnailer
