#include "libs/KestoRenderLib/callout/Overlay.h"

#include "KestoMediaLib/CalloutMedia.h"
#include "platform/CalloutDrawer.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <ostream>

namespace CalloutTests {

namespace {

bool isPainted(std::uint32_t argb) {
    return argb >> 24 > 85;
}

} // namespace

boost::shared_ptr<const KestoMediaLib::Callout> calloutOf(const Sketch& sketch) {
    const auto media =
        boost::make_shared<KestoMediaLib::CalloutMedia>(boost::make_shared<KestoMediaLib::VectorDrawing>(
            sketch.kind, sketch.shape, sketch.style, sketch.params));
    media->setExtent({sketch.width * 1.0, sketch.height * 1.0});
    for (const auto& edge : sketch.edges)
        media->addEdgeModification(edge);
    return media;
}

void PrintTo(const Extent& extent, std::ostream* out) {
    *out << extent.left << ',' << extent.top << " to " << extent.right << ',' << extent.bottom;
}

std::uint32_t Overlay::at(int x, int y) const {
    std::uint32_t argb = 0;
    std::memcpy(&argb,
                frame->GetPixels() + static_cast<std::ptrdiff_t>(frame->GetStride()) * y +
                    std::ptrdiff_t{x} * 4,
                sizeof argb);
    return argb;
}

Extent Overlay::painted() const {
    return painted(isPainted);
}

Extent Overlay::painted(const std::function<bool(std::uint32_t)>& isMeant) const {
    Extent extent = {width(), height(), 0, 0};
    for (int y = 0; y < height(); ++y)
        for (int x = 0; x < width(); ++x)
            if (isMeant(at(x, y)))
                extent = {std::min(extent.left, x), std::min(extent.top, y), std::max(extent.right, x + 1),
                          std::max(extent.bottom, y + 1)};
    return extent.right == 0 ? Extent() : extent;
}

int Overlay::paintedInColumn(int x) const {
    int count = 0;
    for (int y = 0; y < height(); ++y)
        count += isPainted(at(x, y)) ? 1 : 0;
    return count;
}

int Overlay::paintedInRow(int y) const {
    int count = 0;
    for (int x = 0; x < width(); ++x)
        count += isPainted(at(x, y)) ? 1 : 0;
    return count;
}

int Overlay::paintedPixels() const {
    int count = 0;
    for (int y = 0; y < height(); ++y)
        count += paintedInRow(y);
    return count;
}

bool Overlay::hasAnything() const {
    return painted([](std::uint32_t argb) { return argb != 0; }) != Extent();
}

Overlay draw(const Sketch& sketch) {
    KestoRenderLib::CalloutDrawer drawer(calloutOf(sketch), {}, /*editing=*/false);
    drawer.SetTime(KestoMediaLib::RationalUtil::toKestoTime(
        KestoMediaLib::SafeRational(static_cast<__int64>(sketch.seconds * 1000), 1000)));
    return Overlay(drawer.GenerateOverlay({sketch.width, sketch.height}, {sketch.scale, sketch.scale},
                                          sketch.transparent, sketch.antialiased));
}

} // namespace CalloutTests
