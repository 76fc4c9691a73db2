#pragma once

#include <string>

namespace KestoRenderLib {

/// An SVG document and a style sheet that goes with it.
struct RevealedSvg {
    std::string document;
    std::string stylesheet; ///< may be empty
};

/// The document as far as a pen has come at `progress`, 0 to 1, that draws one element after the other, each
/// line for as long as it is. The insides of the element at hand fade in; texts, pictures and copies fade in
/// as a whole. What is no well-formed XML may come back in any way.
RevealedSvg revealSvg(const std::string& document, double progress, bool antialiased);

} // namespace KestoRenderLib
