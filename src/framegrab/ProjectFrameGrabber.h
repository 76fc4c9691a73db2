#pragma once

#include "framegrab/IFrameGrabber.h"
#include "platform/Export.h"
#include "platform/KestoMediaLib.h"
#include "platform/KestoRenderLib.h"
#include "platform/WinTypes.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

#include <list>

namespace KestoRenderLib {

class IDrawingManager;
class RenderObjectFactory;
class RenderState;
class WRTimeline;

} // namespace KestoRenderLib

namespace KestoThumbnailer {

/// Renders frames of a project off screen, through a pipeline of its own that is built once. One caller at a
/// time, on any thread; nobody may edit the project meanwhile. What the renderer throws passes through.
class KESTO_EXPORT ProjectFrameGrabber : public IFrameGrabber {
public:
    /// Shares `project`. Throws KestoRenderLib::KestoRenderLibException for an empty pointer, and when there
    /// is no pipeline for it.
    explicit ProjectFrameGrabber(boost::shared_ptr<const KestoMediaLib::Project> project);
    ~ProjectFrameGrabber() override;
    ProjectFrameGrabber(const ProjectFrameGrabber&) = delete;
    ProjectFrameGrabber& operator=(const ProjectFrameGrabber&) = delete;

    /// Renders the whole canvas at its own size, then scales. The frame that shows at `time` is that of the
    /// last whole frame number; before time 0 the numbers are negative.
    boost::shared_ptr<KestoRenderLib::MetaBitmap>
    frameAtTime(boost::rational<__int64> time, bool keepOrientation, KestoRenderLib::Size size) override;

    /// Renders frame `frame` with the part `sourceRect` of the canvas filling `size` pixels in the middle of
    /// the viewport. `sourceRect` is in canvas pixels, counted from the middle of the canvas. What lies
    /// outside is drawn with `outsideOpacity` of 255. The picture is that of a large screen, or after a call
    /// of `frameAtTime` as large as the canvas.
    ///
    /// The frame is the renderer's own, and the next call may draw over it: use or copy it before then. Empty
    /// when nothing was drawn.
    boost::shared_ptr<KestoRenderLib::MetaBitmap>
    frameAtTimeForZoomNPan(__int64 frame, const KestoRenderLib::Size& size,
                           const KestoMediaLib::Rect<double>& sourceRect, int outsideOpacity);

    /// Where frames are rendered, in pixels; at first that of a new drawing manager.
    const KestoMediaLib::Rect<int> viewport() const;

    /// From the next frame on, and until the next call, only these are rendered; an empty list stands for
    /// all. Copies the list.
    void setMediaToRender(const std::list<boost::shared_ptr<const KestoMediaLib::Media>>& media);

private:
    void CreatePipeline();
    void Reset();
    /// The drawing manager's own.
    boost::shared_ptr<KestoRenderLib::MetaBitmap> CurrentFrame() const;

    boost::shared_ptr<const KestoMediaLib::Project> project;
    std::list<boost::shared_ptr<const KestoMediaLib::Media>> mediaToRender;
    boost::shared_ptr<KestoRenderLib::IDrawingManager> drawingManager;
    boost::shared_ptr<KestoRenderLib::WRTimeline> timeline;
    boost::shared_ptr<KestoRenderLib::RenderState> renderState;
    boost::shared_ptr<KestoRenderLib::RenderObjectFactory> renderObjectFactory;
};

} // namespace KestoThumbnailer
