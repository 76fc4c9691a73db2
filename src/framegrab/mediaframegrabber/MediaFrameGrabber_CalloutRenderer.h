#pragma once

#include "framegrab/IFrameGrabber.h"
#include "platform/CalloutDrawer.h"
#include "platform/KestoMediaCallout.h"

#include <memory>

namespace KestoThumbnailer {

/// Draws a callout, which has one picture at one size.
class MediaFrameGrabber_CalloutRenderer final : public IFrameGrabber {
public:
    /// Throws std::invalid_argument for an empty pointer and for a callout without a drawing.
    explicit MediaFrameGrabber_CalloutRenderer(
        const boost::shared_ptr<const KestoMediaLib::Callout>& callout);
    /// The same with a drawer made for it, without which it throws std::runtime_error.
    MediaFrameGrabber_CalloutRenderer(boost::shared_ptr<const KestoMediaLib::Callout> callout,
                                      std::unique_ptr<KestoRenderLib::CalloutDrawer> drawer);

    /// Neither `time` nor `size` counts.
    boost::shared_ptr<KestoRenderLib::MetaBitmap>
    frameAtTime(boost::rational<__int64> time, bool keepOrientation, KestoRenderLib::Size size) override;

private:
    KestoRenderLib::Size DrawingSize() const;
    __int64 DrawingTime() const;
    /// When a callout that draws itself is done, in model time from its start; 0 for one that does not.
    __int64 CalloutRendererDrawTime() const;

    boost::shared_ptr<const KestoMediaLib::Callout> callout;
    boost::shared_ptr<const KestoMediaLib::VectorNode> vectorNode;
    std::unique_ptr<KestoRenderLib::CalloutDrawer> drawer;
};

} // namespace KestoThumbnailer
