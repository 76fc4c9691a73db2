#pragma once

#include <string_view>

namespace KestoRenderLib {

/// The value of an attribute, without its quotes, as a part of `attributes`; null if it is missing.
std::string_view svgAttribute(std::string_view attributes, std::string_view name);

/// How long the outline of an SVG element is in its own units, near enough to share out drawing time: curves
/// are measured along a few chords. 0 for an element of another name, and for one that draws nothing.
double svgLength(std::string_view element, std::string_view attributes);

} // namespace KestoRenderLib
