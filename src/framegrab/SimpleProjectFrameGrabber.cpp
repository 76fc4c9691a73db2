#include "framegrab/SimpleProjectFrameGrabber.h"

#include "framegrab/FrameGrabberUtil.h"
#include "framegrab/ProjectFrameGrabber.h"

#include <boost/make_shared.hpp>

namespace KestoThumbnailer {

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it by value
SimpleProjectFrameGrabber::SimpleProjectFrameGrabber(KestoMediaLib::SimpleProject project)
    : grabber(std::make_unique<boost::shared_ptr<ProjectFrameGrabber>>(
          boost::make_shared<ProjectFrameGrabber>(project.project()))) {}

SimpleProjectFrameGrabber::~SimpleProjectFrameGrabber() = default;

KestoRenderLib::SimpleMetaBitmap SimpleProjectFrameGrabber::frameAtTime(double seconds) {
    return KestoRenderLib::SimpleMetaBitmap(FrameAtSeconds(seconds, **grabber));
}

} // namespace KestoThumbnailer
