#pragma once

#include "framegrab/IFrameGrabber.h"
#include "platform/KestoMediaModel.h"

#include <memory>

namespace KestoThumbnailer {

class ProjectFrameGrabber;

/// Renders a media in a project of its own, on a canvas of its size, where it starts at time 0.
class MediaFrameGrabber_UsesProjectFrameGrabber final : public IFrameGrabber {
public:
    /// Throws std::runtime_error for a media on no track, and for one whose track lies in no mixer.
    explicit MediaFrameGrabber_UsesProjectFrameGrabber(
        const boost::shared_ptr<const KestoMediaLib::VisualMedia>& media);
    ~MediaFrameGrabber_UsesProjectFrameGrabber() override;

    boost::shared_ptr<KestoRenderLib::MetaBitmap>
    frameAtTime(boost::rational<__int64> time, bool keepOrientation, KestoRenderLib::Size size) override;

private:
    std::unique_ptr<KestoMediaLib::SimpleProject> simpleProject;
    std::unique_ptr<ProjectFrameGrabber> projectGrabber;
};

} // namespace KestoThumbnailer
