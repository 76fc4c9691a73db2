#include "platform/KestoMediaDispatcher.h"

#include "platform/KestoMediaCallout.h"

#include <boost/pointer_cast.hpp>

namespace KestoMediaLib {

void ConstMediaDispatcher::visitPlaceholder(const PlaceholderMedia&) {}

void ConstMediaDispatcher::visitGap(const GapMedia&) {}

void MediaTypeFromMediaDispatcher::visitCallout(const Callout& media) {
    callout = boost::static_pointer_cast<const Callout>(media.weak_from_this().lock());
}

void MediaTypeFromMediaDispatcher::visitStitched(const StitchedMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitAudio(const AudioMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitUnified(const UnifiedMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitColor(const ColorMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitVideo(const VideoFileMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitScreenRecording(const VideoFileMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitImage(const ImageFileMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitPlaceholder(const PlaceholderMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitAnimatedGif(const ImageFileMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitDocument(const DocumentMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitFreezeFrame(const FreezeFrameMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitGap(const GapMedia&) {
    callout.reset();
}

void MediaTypeFromMediaDispatcher::visitGroup(const GroupMedia&) {
    callout.reset();
}

} // namespace KestoMediaLib
