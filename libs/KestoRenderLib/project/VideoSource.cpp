#include "KestoRenderLib/project/VideoSource.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace KestoRenderLib {

namespace {

/// A decoder's frame, locked as long as it is looked at.
class LockedFrame {
public:
    explicit LockedFrame(std::unique_ptr<FrameCodecLib::Bitmap> decoded)
        : bitmap(std::move(decoded))
        , locked(bitmap->Lock())
        , view({bitmap->GetWidth(), bitmap->GetHeight()}, bitmap->GetStride(), PixelFormat::Premultiplied32,
               locked ? bitmap->GetPixels() : nullptr, false) {}
    ~LockedFrame() {
        if (locked)
            bitmap->Unlock();
    }
    LockedFrame(const LockedFrame&) = delete;
    LockedFrame& operator=(const LockedFrame&) = delete;

    MetaBitmap& frame() { return view; }

private:
    std::unique_ptr<FrameCodecLib::Bitmap> bitmap;
    bool locked;
    MetaBitmap view;
};

} // namespace

VideoSource::VideoSource(const std::string& path, int streamIndex) {
    const std::unique_ptr<FrameCodecLib::DecoderFactory> factory(FrameCodecLib::DecoderFactory::Create());
    decoder.reset(factory->CreateDecoder(path, streamIndex, /*decodersAtOnce=*/1));
    if (decoder)
        display = {decoder->GetDisplayWidth(), decoder->GetDisplayHeight()};
}

boost::rational<__int64> VideoSource::duration() const {
    return decoder ? decoder->GetDuration() : 0;
}

boost::rational<__int64> VideoSource::frameRate() const {
    return decoder ? decoder->GetFrameRate() : 0;
}

boost::shared_ptr<MetaBitmap> VideoSource::picture(const KestoRenderLib::Size& wanted) {
    if (!decoder || !decoder->SetOutputSize(wanted.width, wanted.height))
        return {};
    FrameCodecLib::FrameTiming unused;
    std::unique_ptr<FrameCodecLib::Bitmap> frame(decoder->GetFrameAtTime(shown, unused, 0));
    if (!frame)
        return {};
    const auto locked = boost::make_shared<LockedFrame>(std::move(frame));
    if (!locked->frame().GetPixels() || locked->frame().Size() != wanted)
        return {};
    return {locked, &locked->frame()};
}

} // namespace KestoRenderLib
