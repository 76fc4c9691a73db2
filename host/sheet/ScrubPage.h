#pragma once

#include "sheet/SheetTimes.h"

#include <KestoThumbnailer/ISpriteComposer.h>

#include <string>
#include <vector>

namespace KestoHost {

/// What a page shows.
struct ScrubPage {
    std::string title;     ///< UTF-8
    std::string mediaType; ///< of `picture`: "image/png"
    std::string picture;   ///< the bytes of the sheet's file
    int width = 0;         ///< of the sheet, in pixels
    int height = 0;
    std::vector<Cue> cues;
    std::vector<CRect> tiles; ///< one for each cue
    std::vector<int> holes;   ///< the tiles that have no picture, ascending
};

/// One HTML file, with nothing outside of it: the tile of a time is shown as the pointer, a finger or the
/// arrow keys move along a strip.
std::string htmlText(const ScrubPage& page);

/// RFC 4648, 4.
std::string base64(const std::string& bytes);

} // namespace KestoHost
