#include "platform/KestoRenderProject.h"

#include <utility>

namespace KestoRenderLib {

void RenderState::setMediaToRender(MediaList list) {
    media = std::move(list);
}

const MediaList& RenderState::mediaToRender() const {
    return media;
}

void RenderState::setRendererInfo(const RendererInfo& renderer) {
    info = renderer;
}

const RendererInfo& RenderState::rendererInfo() const {
    return info;
}

} // namespace KestoRenderLib
