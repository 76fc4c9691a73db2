#include "KestoRenderLib/project/ProjectTimeline.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace KestoRenderLib {

boost::shared_ptr<WRTimeline> WRTimeline::create(boost::shared_ptr<const KestoMediaLib::Project> project,
                                                 boost::shared_ptr<IDrawingManager> drawingManager,
                                                 boost::shared_ptr<RenderObjectFactory> factory,
                                                 boost::shared_ptr<IRenderState> renderState) {
    if (!project || !drawingManager || !factory || !renderState)
        return {};
    return boost::make_shared<ProjectTimeline>(std::move(project), std::move(drawingManager),
                                               std::move(factory), std::move(renderState));
}

} // namespace KestoRenderLib
