#pragma once

#include "sheet/SheetTimes.h"

#include <KestoThumbnailer/ISpriteComposer.h>

#include <string>
#include <vector>

namespace KestoHost {

/// A WebVTT file of thumbnails: each cue's text is the part of the picture to show (Media Fragments URI 1.0,
/// 4.2.2). `tiles` has a rectangle for each cue; `pictureUrl` stands before each `#xywh=`.
std::string webVttText(const std::vector<Cue>& cues, const std::vector<CRect>& tiles,
                       const std::string& pictureUrl);

/// How a file that lies at `from` names the file at `to`: a relative URL of RFC 3986, which is the name alone
/// in the same folder.
std::string relativeUrl(const std::string& from, const std::string& to);

} // namespace KestoHost
