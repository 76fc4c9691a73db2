#pragma once

#include "ThumbnailRequest.h"
#include "video/MovingInput.h"

#include <KestoThumbnailer/platform/KestoMediaLib.h>
#include <KestoThumbnailer/platform/KestoRenderLib.h>

#include <optional>
#include <string>

namespace KestoHost {

/// A part of what is shown, and the size at which it is wanted, in pixels.
struct ZoomView {
    KestoMediaLib::Rect<double> part; ///< from the top left corner; it may reach outside
    KestoRenderLib::Size size;
};

/// Reads "X,Y,WIDTH,HEIGHT", with or without fractions: a place that may be negative, and a size above 0.
/// Nothing for any other text.
std::optional<KestoMediaLib::Rect<double>> parseZoomPart(const std::string& text);
/// Reads "WIDTHxHEIGHT", each from 1 up to `TimedFrames::largestView`.
std::optional<KestoRenderLib::Size> parseZoomSize(const std::string& text);
/// As CLI11 wants it.
std::string checkZoomPart(const std::string& text);
std::string checkZoomSize(const std::string& text);

/// Makes the thumbnail of the frame whose interval covers the request's time, and tells which one it was,
/// save for a recording, whose screen and camera have frames of their own.
/// With a view, `bounds` do not count. Requires: `refusalOf` has nothing against the request. The process
/// must have started GDI+.
ThumbReport exactThumbnail(const ThumbnailRequest& request, InputKind kind,
                           const std::optional<ZoomView>& view);

} // namespace KestoHost
