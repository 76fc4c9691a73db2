#pragma once

#include "KestoRenderLib/AffinePaint.h"

#include <cstdint>
#include <string>

namespace KestoRenderLib {

/// What a callout comes to at one moment: every parameter has its value, lengths are in the callout's own
/// pixels, and colours are 0xAARRGGBB, not premultiplied.
struct CalloutLook {
    enum class Shape {
        Arrow,
        Text,
        TextArrow,
        Rectangle,
        RoundedRectangle,
        Ellipse,
        Line,
        SpeechBubble,
        Highlight,
        BlurBox,
        Spotlight,
        Svg,
    };
    enum class Dash { Solid, Dash, Dot, DashDot };
    enum class Cap { Butt, Round, Square };
    enum class HeadStyle { Triangle, Swept, Open, Circle };
    enum class HeadAt { End, Start, Both, None };
    enum class Side { Start, Middle, End }; ///< left or top, middle, right or bottom

    Shape shape = Shape::Rectangle;
    double width = 0; ///< of the box that everything lies in
    double height = 0;
    double progress = 1; ///< how much of it is drawn by now, from 0 to 1

    std::uint32_t fill = 0;
    std::uint32_t border = 0; ///< of lines and arrows, too
    double borderWidth = 0;   ///< 0 for none
    Dash dash = Dash::Solid;
    double cornerRadius = 0; ///< below 0, a spotlight is an ellipse

    double startX = 0; ///< parts of the box
    double startY = 0;
    double endX = 1;
    double endY = 1;
    double strokeWidth = 0;
    Cap cap = Cap::Round;
    HeadStyle headStyle = HeadStyle::Triangle;
    HeadAt headAt = HeadAt::None;
    double headSize = 0;

    double tailX = 0; ///< parts of the bubble's body
    double tailY = 0;

    std::string text; ///< UTF-8
    std::string font;
    double fontSize = 0;
    int fontWeight = 400;
    bool italic = false;
    bool underlined = false;
    std::uint32_t textColor = 0;
    Side across = Side::Middle;
    Side down = Side::Middle;
    double padding = 0;
    bool wraps = true;
    bool fits = true; ///< text that is too large is made smaller

    bool hasShadow = false;
    std::uint32_t shadow = 0;
    double shadowBlur = 0;
    double shadowX = 0;
    double shadowY = 0;

    std::string svg; ///< the document
};

/// One callout that is drawn over all of a target.
struct CalloutPaint {
    const CalloutLook& look;
    bool antialiased = true;
    PaintedPixels target; ///< what is there stays where the callout is transparent
};

/// The one entry point of the callout module. False, with nothing drawn or only a part, for an SVG that is
/// none or takes too long, for a target of more than 32767 pixels in a direction, or without memory. Any
/// thread.
using DrawCallout = bool(const CalloutPaint& paint);

constexpr const char* drawCalloutName = "kestoDrawCallout";

} // namespace KestoRenderLib
