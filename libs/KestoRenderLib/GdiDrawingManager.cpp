#include "platform/KestoRenderProject.h"

#include <utility>

namespace KestoRenderLib {

namespace {

constexpr Size largeScreen{3840, 2160};

} // namespace

GdiDrawingManager::GdiDrawingManager(const RendererInfo& renderer, bool, KestoRenderLib::Size size)
    : info(renderer)
    , extent(size == KestoRenderLib::Size{} ? largeScreen : size) {}

KestoRenderLib::Size GdiDrawingManager::size() const {
    return extent;
}

void GdiDrawingManager::setSize(const KestoRenderLib::Size& size) {
    extent = size;
}

boost::shared_ptr<MetaBitmap> GdiDrawingManager::currentFrame() const {
    return frame;
}

void GdiDrawingManager::setCurrentFrame(boost::shared_ptr<MetaBitmap> rendered) {
    frame = std::move(rendered);
}

} // namespace KestoRenderLib
