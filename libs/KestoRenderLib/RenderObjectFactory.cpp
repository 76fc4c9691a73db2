#include "KestoRenderLib/project/RenderObjects.h"

#include <boost/make_shared.hpp>

namespace KestoRenderLib {

RenderObjectFactory::RenderObjectFactory(boost::shared_ptr<IDrawingManager>,
                                         boost::shared_ptr<const KestoMediaLib::Project>,
                                         boost::shared_ptr<IRenderState>,
                                         boost::shared_ptr<QRLVST::IVSTLibrary>)
    : made(boost::make_shared<Objects>()) {}

RenderObjectFactory::~RenderObjectFactory() = default;

} // namespace KestoRenderLib
