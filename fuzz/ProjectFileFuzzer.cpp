#include "KestoMediaLib/MediaSpan.h"
#include "KestoMediaLib/Placement.h"
#include "KestoMediaLib/ProjectFile.h"
#include "platform/KestoMediaModel.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace KestoMediaLib; // NOLINT(google-build-using-namespace)

void require(bool holds) {
    if (!holds)
        std::abort();
}

void checkMedia(const Media& media) {
    const MediaSpan span = spanOf(media);
    require(span.duration >= 0 && endOf(span) >= span.start);
    const auto* visual = dynamic_cast<const VisualMedia*>(&media);
    if (!visual)
        return;
    const RationalTime middle = animationTimeAt(span, span.start + span.duration / 2);
    const double width = visual->width(middle);
    const auto matrix = placementMatrix(placementOf(*visual), middle, width, visual->height(middle));
    require(std::isfinite(matrix.at(0, 0)) && std::isfinite(matrix.at(1, 3)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto project = readProjectText({reinterpret_cast<const char*>(data), size}, "/base");
    if (!project) {
        require(!project.error().message.empty());
        return 0;
    }
    require((*project)->frameRate().numerator() > 0);
    const float width = (*project)->timeline()->attributeWidth()->value();
    require(width >= 1 && width <= 16384);
    for (const auto& track : (*project)->timeline()->mixer()->tracks())
        for (const auto& media : track->medias())
            checkMedia(*media);
    return 0;
}
