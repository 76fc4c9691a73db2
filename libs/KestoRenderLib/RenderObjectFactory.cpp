#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

class RenderObjectFactory::Objects {};

RenderObjectFactory::RenderObjectFactory(boost::shared_ptr<IDrawingManager>,
                                         boost::shared_ptr<const KestoMediaLib::Project>,
                                         boost::shared_ptr<IRenderState>,
                                         boost::shared_ptr<QRLVST::IVSTLibrary>) {}

RenderObjectFactory::~RenderObjectFactory() = default;

} // namespace KestoRenderLib
