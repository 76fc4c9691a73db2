#pragma once

#include "KestoRenderLib/project/Affine.h"
#include "KestoRenderLib/project/Surface.h"

#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

/// Renders into a `GdiDrawingManager`; with one of another class nothing is drawn.
class ProjectTimeline final : public WRTimeline {
public:
    /// None is empty.
    ProjectTimeline(boost::shared_ptr<const KestoMediaLib::Project> project,
                    boost::shared_ptr<IDrawingManager> drawingManager,
                    boost::shared_ptr<RenderObjectFactory> factory,
                    boost::shared_ptr<IRenderState> renderState);

    void setViewport(const KestoMediaLib::Rect<int>& viewport,
                     const KestoMediaLib::TransformMatrix& transform) override;
    KestoMediaLib::Rect<int> viewport() const override { return view; }
    void renderFrame(__int64 frame) override;

private:
    boost::shared_ptr<MetaBitmap> render(__int64 frame, const KestoRenderLib::Size& size);
    void drawProject(Surface& surface, __int64 frame, const Affine& canvasToScreen);
    Affine viewToScreen() const;
    boost::shared_ptr<MetaBitmap> takeReusableMemory();

    boost::shared_ptr<const KestoMediaLib::Project> project;
    boost::shared_ptr<IDrawingManager> manager;
    boost::shared_ptr<RenderObjectFactory> factory;
    boost::shared_ptr<IRenderState> state;
    KestoMediaLib::Rect<int> view;
    KestoMediaLib::TransformMatrix transform;
    boost::shared_ptr<MetaBitmap> memory; ///< what the last pass drew into
};

} // namespace KestoRenderLib
