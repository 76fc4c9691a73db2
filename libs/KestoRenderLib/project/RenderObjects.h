#pragma once

#include "KestoRenderLib/project/SourceCache.h"

#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

/// What lives as long as a pipeline.
class RenderObjectFactory::Objects {
public:
    SourceCache& sources() { return cache; }

private:
    SourceCache cache;
};

} // namespace KestoRenderLib
