#include "framegrab/MediaFrameGrabber.h"

#include "framegrab/mediaframegrabber/MediaFrameGrabberDispatcher.h"
#include "framegrab/mediaframegrabber/MediaFrameGrabber_CalloutRenderer.h"
#include "framegrab/mediaframegrabber/MediaFrameGrabber_UsesFrameCodecLibDirectly.h"
#include "framegrab/mediaframegrabber/MediaFrameGrabber_UsesProjectFrameGrabber.h"

#include <boost/pointer_cast.hpp>

#include <stdexcept>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::Callout;
using KestoMediaLib::Media;
using KestoMediaLib::VisualMedia;

// Deliberate: a file decides before a callout, and a callout before sound, in whatever order they stand in a
// media that holds them all.
std::unique_ptr<IFrameGrabber> StrategyFor(const boost::shared_ptr<const Media>& media) {
    MediaFrameGrabberDispatcher kind;
    if (media)
        media->accept(kind);
    if (kind.usesFrameCodec)
        return std::make_unique<MediaFrameGrabber_UsesFrameCodecLibDirectly>(kind.sourceName,
                                                                             kind.streamIndex);
    // Deliberate: a callout inside another media does not make that one a callout, and is refused there.
    if (kind.isCallout)
        return std::make_unique<MediaFrameGrabber_CalloutRenderer>(
            boost::dynamic_pointer_cast<const Callout>(media));
    if (kind.hasNoPicture)
        return nullptr;
    const auto visual = boost::dynamic_pointer_cast<const VisualMedia>(media);
    if (!visual)
        throw std::invalid_argument("Can't create a MediaFrameGrabber for non VisualMedia");
    return std::make_unique<MediaFrameGrabber_UsesProjectFrameGrabber>(visual);
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it by value
MediaFrameGrabber::MediaFrameGrabber(boost::shared_ptr<const Media> media)
    : impl(StrategyFor(media)) {}

MediaFrameGrabber::~MediaFrameGrabber() = default;

boost::shared_ptr<KestoRenderLib::MetaBitmap> MediaFrameGrabber::frameAtTime(boost::rational<__int64> time,
                                                                             bool keepOrientation,
                                                                             KestoRenderLib::Size size) {
    return impl ? impl->frameAtTime(time, keepOrientation, size)
                : boost::shared_ptr<KestoRenderLib::MetaBitmap>();
}

} // namespace KestoThumbnailer
