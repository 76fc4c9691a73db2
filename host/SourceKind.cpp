#include "SourceKind.h"

#include "LetterCase.h"

#include <string_view>

namespace KestoHost {

SourceKind sourceKindOf(const std::string& path) {
    constexpr std::string_view documentEnding = ".pdf";
    // A document is an image to the loader, too.
    return {lowerCase(path).ends_with(documentEnding) ? "pdf" : "image", KestoThumbnailer::SourceImage};
}

} // namespace KestoHost
