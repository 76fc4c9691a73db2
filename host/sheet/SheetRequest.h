#pragma once

#include "sheet/SheetLayout.h"
#include "sheet/SheetTimes.h"

#include <optional>
#include <string>

namespace KestoHost {

/// One sheet to be made. Its names are as they were typed; those of files that are not wanted are empty.
struct SheetRequest {
    std::string input;
    std::string output;
    std::string vtt;
    std::string html;
    TimesAsked times;
    Bounds tile;
    std::optional<KestoThumbnailer::SpriteStyle> style; ///< none: the one that clips nothing
};

} // namespace KestoHost
