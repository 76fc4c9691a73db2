#include "framegrab/mediaframegrabber/MediaFrameGrabber_UsesProjectFrameGrabber.h"

#include "framegrab/ProjectFrameGrabber.h"

#include <boost/make_shared.hpp>

#include <stdexcept>
#include <string>
#include <vector>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::Clipping;
using KestoMediaLib::Media;
using KestoMediaLib::PasteClippingCmd;
using KestoMediaLib::VisualMedia;

constexpr int onNewTracks = -1;

boost::rational<unsigned long> FrameRate() {
    return {60, 1};
}

boost::shared_ptr<const Clipping> ClippingOf(const boost::shared_ptr<const Media>& media) {
    const auto track = media->parentTrack().lock();
    if (!track)
        throw std::runtime_error("Can't thumbnail a media that doesn't have a parent track");
    const auto mixer = track->parentMixer().lock();
    if (!mixer)
        throw std::runtime_error("Can't thumbnail a media with a track that doesn't have a parent mixer");
    return boost::make_shared<Clipping>(mixer, FrameRate(),
                                        std::vector<boost::shared_ptr<const Media>>{media}, std::string());
}

} // namespace

MediaFrameGrabber_UsesProjectFrameGrabber::MediaFrameGrabber_UsesProjectFrameGrabber(
    const boost::shared_ptr<const VisualMedia>& media)
    : simpleProject(std::make_unique<KestoMediaLib::SimpleProject>(FrameRate())) {
    simpleProject->setCanvasWidth(static_cast<double>(media->width(0)));
    simpleProject->setCanvasHeight(static_cast<double>(media->height(0)));
    const auto clipping = ClippingOf(media);
    const auto project = simpleProject->project();
    project->commandInterface().executeCommand(PasteClippingCmd::create(
        clipping, project, project->timeline()->mixer(), /*position=*/0, onNewTracks));
    projectGrabber = std::make_unique<ProjectFrameGrabber>(project);
}

MediaFrameGrabber_UsesProjectFrameGrabber::~MediaFrameGrabber_UsesProjectFrameGrabber() = default;

boost::shared_ptr<KestoRenderLib::MetaBitmap>
MediaFrameGrabber_UsesProjectFrameGrabber::frameAtTime(boost::rational<__int64> time, bool keepOrientation,
                                                       KestoRenderLib::Size size) {
    return projectGrabber->frameAtTime(time, keepOrientation, size);
}

} // namespace KestoThumbnailer
