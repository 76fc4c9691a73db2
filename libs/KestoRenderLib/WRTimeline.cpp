#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

// FIXME: nothing renders a timeline yet.
boost::shared_ptr<WRTimeline> WRTimeline::create(boost::shared_ptr<const KestoMediaLib::Project>,
                                                 boost::shared_ptr<IDrawingManager>,
                                                 boost::shared_ptr<RenderObjectFactory>,
                                                 boost::shared_ptr<IRenderState>) {
    return {};
}

} // namespace KestoRenderLib
