#include "KestoMediaLib/FileMedia.h"

#include "platform/KestoMediaDispatcher.h"

#include <boost/make_shared.hpp>

namespace KestoMediaLib {

void VideoClip::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitVideo(*this);
}

boost::shared_ptr<Media> VideoClip::clone() const {
    return boost::make_shared<VideoClip>(*this);
}

void ScreenRecordingClip::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitScreenRecording(*this);
}

boost::shared_ptr<Media> ScreenRecordingClip::clone() const {
    return boost::make_shared<ScreenRecordingClip>(*this);
}

void ImageClip::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitImage(*this);
}

boost::shared_ptr<Media> ImageClip::clone() const {
    return boost::make_shared<ImageClip>(*this);
}

void AnimatedGifClip::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitAnimatedGif(*this);
}

boost::shared_ptr<Media> AnimatedGifClip::clone() const {
    return boost::make_shared<AnimatedGifClip>(*this);
}

void AudioMedia::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitAudio(*this);
}

boost::shared_ptr<Media> AudioMedia::clone() const {
    return boost::make_shared<AudioMedia>(*this);
}

void DocumentMedia::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitDocument(*this);
}

boost::shared_ptr<Media> DocumentMedia::clone() const {
    return boost::make_shared<DocumentMedia>(*this);
}

void FreezeFrameMedia::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitFreezeFrame(*this);
}

boost::shared_ptr<Media> FreezeFrameMedia::clone() const {
    return boost::make_shared<FreezeFrameMedia>(*this);
}

} // namespace KestoMediaLib
