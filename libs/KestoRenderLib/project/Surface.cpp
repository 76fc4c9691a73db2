#include "KestoRenderLib/project/Surface.h"

#include "KestoRenderLib/project/Box.h"
#include "KestoRenderLib/project/PixelRows.h"

#include <boost/make_shared.hpp>

#include <cstddef>
#include <utility>

namespace KestoRenderLib {

namespace {

/// A frame over a part of `whole`, which it does not keep alive.
boost::shared_ptr<MetaBitmap> windowOf(const MetaBitmap& whole, const Rect& area) {
    unsigned char* first = whole.GetPixels() + static_cast<std::ptrdiff_t>(whole.GetStride()) * area.top +
                           static_cast<std::ptrdiff_t>(area.left) * 4;
    return boost::make_shared<MetaBitmap>(sizeOf(area), whole.GetStride(), PixelFormat::Premultiplied32,
                                          first, false);
}

} // namespace

Surface::Surface(const Size& size, const Rect& clip, boost::shared_ptr<MetaBitmap> reusable)
    : extent(size)
    , clipped(intersection(clip, {0, 0, size.width, size.height})) {
    if (reusable && reusable->Size() == size)
        own = std::move(reusable);
}

bool Surface::coversAll(const MetaBitmap& picture, int x, int y) const {
    const Rect everything(0, 0, extent.width, extent.height);
    return clipped == everything &&
           intersection(everything, {x, y, x + picture.GetWidth(), y + picture.GetHeight()}) == everything;
}

void Surface::put(const boost::shared_ptr<MetaBitmap>& picture, int x, int y, double opacity) {
    // Over nothing, source-over is the source.
    if (content == Content::Nothing && opacity >= 1 && picture->Size() == extent &&
        coversAll(*picture, x, y)) {
        passedThrough = picture;
        content = Content::Picture;
        return;
    }
    if (const auto target = window())
        blendOver(*picture, *target, x - clipped.left, y - clipped.top, opacity);
}

boost::shared_ptr<MetaBitmap> Surface::window() {
    if (isEmpty(clipped) || !makeWritable())
        return {};
    return windowOf(*own, clipped);
}

bool Surface::takeMemory() {
    if (own) {
        clear(*own, {0, 0, extent.width, extent.height});
        return true;
    }
    own = MetaBitmap::Create(extent, PixelFormat::Premultiplied32);
    return own != nullptr;
}

bool Surface::makeWritable() {
    switch (content) {
    case Content::OwnMemory:
        return true;
    case Content::Nothing:
        if (!takeMemory())
            return false;
        break;
    case Content::Picture:
        if (!own)
            own = MetaBitmap::Create(extent, PixelFormat::Premultiplied32);
        if (!own)
            return false;
        copyInto(*passedThrough, *own, 0, 0);
        passedThrough.reset();
        break;
    }
    content = Content::OwnMemory;
    return true;
}

void Surface::fadeOutside(const Rect& inside, double opacity) {
    const Rect kept = intersection(inside, {0, 0, extent.width, extent.height});
    if (content == Content::Nothing || sizeOf(kept) == extent || !makeWritable())
        return;
    if (isEmpty(kept)) {
        fade(*own, {0, 0, extent.width, extent.height}, opacity);
        return;
    }
    fade(*own, {0, 0, extent.width, kept.top}, opacity);
    fade(*own, {0, kept.top, kept.left, kept.bottom}, opacity);
    fade(*own, {kept.right, kept.top, extent.width, kept.bottom}, opacity);
    fade(*own, {0, kept.bottom, extent.width, extent.height}, opacity);
}

boost::shared_ptr<MetaBitmap> Surface::result() {
    if (content == Content::Picture)
        return passedThrough;
    return content == Content::OwnMemory || takeMemory() ? own : boost::shared_ptr<MetaBitmap>();
}

} // namespace KestoRenderLib
