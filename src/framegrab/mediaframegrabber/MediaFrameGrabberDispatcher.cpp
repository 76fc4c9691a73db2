#include "framegrab/mediaframegrabber/MediaFrameGrabberDispatcher.h"

#include "platform/KestoMedia.h"

namespace KestoThumbnailer {

void MediaFrameGrabberDispatcher::Decode(const KestoMediaLib::IMediaSource& source) {
    sourceName = source.fileName();
    streamIndex = source.streamIndex();
    usesFrameCodec = true;
}

void MediaFrameGrabberDispatcher::visitStitched(const KestoMediaLib::StitchedMedia& media) {
    if (!media.hasVideo())
        return;
    // Deliberate: only a file ends the walk, so that one stands for all parts, wherever it lies among them.
    for (const auto& part : media.medias()) {
        part->accept(*this);
        if (usesFrameCodec)
            return;
    }
}

void MediaFrameGrabberDispatcher::visitUnified(const KestoMediaLib::UnifiedMedia& media) {
    media.accessInternals([this](const auto& /*audio*/, const auto& visual) { visual->accept(*this); });
}

void MediaFrameGrabberDispatcher::visitAudio(const KestoMediaLib::AudioMedia&) {
    hasNoPicture = true;
}

void MediaFrameGrabberDispatcher::visitVideo(const KestoMediaLib::VideoFileMedia& media) {
    Decode(media);
}

void MediaFrameGrabberDispatcher::visitScreenRecording(const KestoMediaLib::VideoFileMedia& media) {
    Decode(media);
}

void MediaFrameGrabberDispatcher::visitImage(const KestoMediaLib::ImageFileMedia& media) {
    Decode(media);
}

void MediaFrameGrabberDispatcher::visitAnimatedGif(const KestoMediaLib::ImageFileMedia& media) {
    Decode(media);
}

void MediaFrameGrabberDispatcher::visitCallout(const KestoMediaLib::Callout&) {
    isCallout = true;
}

} // namespace KestoThumbnailer
