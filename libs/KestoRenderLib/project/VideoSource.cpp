#include "KestoRenderLib/project/VideoSource.h"

namespace KestoRenderLib {

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
    const boost::shared_ptr<FrameCodecLib::Bitmap> frame(decoder->GetFrameAtTime(shown, unused, 0));
    const auto picture = MetaBitmap::CreateReferenceToFrameCodecLibBitmap(frame);
    return picture && picture->Size() == wanted ? picture : boost::shared_ptr<MetaBitmap>();
}

} // namespace KestoRenderLib
