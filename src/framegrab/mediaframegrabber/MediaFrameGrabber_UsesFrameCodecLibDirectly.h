#pragma once

#include "framegrab/IFrameGrabber.h"

#include <memory>
#include <string>

namespace FrameCodecLib {

class Decoder;

}

namespace KestoThumbnailer {

/// Decodes one stream of a file. Every frame is empty when it cannot be decoded.
class MediaFrameGrabber_UsesFrameCodecLibDirectly final : public IFrameGrabber {
public:
    MediaFrameGrabber_UsesFrameCodecLibDirectly(const std::string& fileName, int streamIndex);
    ~MediaFrameGrabber_UsesFrameCodecLibDirectly() override;

    boost::shared_ptr<KestoRenderLib::MetaBitmap>
    frameAtTime(boost::rational<__int64> time, bool keepOrientation, KestoRenderLib::Size size) override;

private:
    std::unique_ptr<FrameCodecLib::Decoder> decoder; // null without one for the file
};

} // namespace KestoThumbnailer
