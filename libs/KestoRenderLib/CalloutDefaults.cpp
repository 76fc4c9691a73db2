#include "KestoRenderLib/CalloutDefaults.h"

#include <algorithm>

namespace KestoRenderLib {

namespace {

using Shape = CalloutLook::Shape;

constexpr std::uint32_t accent = 0xFFE5484D;
constexpr std::uint32_t ink = 0xFF1F2328;
constexpr std::uint32_t paper = 0xFFFFFFFF;
constexpr std::uint32_t marker = 0x66FFE600;
constexpr std::uint32_t frost = 0xB3E9EDF1;
constexpr std::uint32_t frostEdge = 0xCCFFFFFF;
constexpr std::uint32_t darkness = 0x99000000;

/// A length that grows with the box, as parts of its shorter side.
double grown(const CalloutLook& look, double part, double least, double most) {
    return std::clamp(std::min(look.width, look.height) * part, least, most);
}

void setColors(CalloutLook& look, bool isBold) {
    switch (look.shape) {
    case Shape::TextArrow:
    case Shape::SpeechBubble:
        look.fill = isBold ? accent : paper;
        look.border = isBold ? borderFor(accent) : look.shape == Shape::TextArrow ? accent : ink;
        break;
    case Shape::Arrow:
    case Shape::Line:
    case Shape::Rectangle:
    case Shape::RoundedRectangle:
    case Shape::Ellipse:
        look.border = accent;
        break;
    case Shape::Highlight:
        look.fill = marker;
        break;
    case Shape::BlurBox:
        look.fill = frost;
        look.border = frostEdge;
        break;
    case Shape::Spotlight:
        look.fill = darkness;
        break;
    case Shape::Text:
    case Shape::Svg:
        break;
    }
}

double cornersOf(const CalloutLook& look) {
    switch (look.shape) {
    case Shape::RoundedRectangle:
        return grown(look, 1.0 / 6, 2, 64);
    case Shape::SpeechBubble:
        return grown(look, 1.0 / 10, 2, 32);
    case Shape::BlurBox:
        return grown(look, 1.0 / 20, 0, 16);
    case Shape::Spotlight:
        return -1;
    default:
        return 0;
    }
}

bool hasBorder(Shape shape) {
    return shape != Shape::Text && shape != Shape::Highlight && shape != Shape::Spotlight;
}

} // namespace

double usualBorder(bool isBold, double width, double height) {
    const double plain = std::clamp(std::min(width, height) / 50, 1.0, 6.0);
    return isBold ? 2 * plain : plain;
}

CalloutLook defaultLook(Shape shape, bool isBold, double width, double height) {
    CalloutLook look;
    look.shape = shape;
    look.width = width;
    look.height = height;
    setColors(look, isBold);
    look.borderWidth = hasBorder(shape) ? usualBorder(isBold, width, height) : 0;
    look.cornerRadius = cornersOf(look);
    look.startY = look.endY = 0.5;
    look.strokeWidth = grown(look, 1.0 / 16, 2, 12) * (isBold ? 1.75 : 1);
    look.headAt = shape == Shape::Arrow ? CalloutLook::HeadAt::End : CalloutLook::HeadAt::None;
    look.tailX = 0.2;
    look.tailY = 1.35;
    look.font = "Sans";
    look.fontSize = grown(look, 1.0 / 5, 8, 48);
    look.fontWeight = isBold ? 700 : 400;
    look.padding = shape == Shape::Text ? 0 : grown(look, 1.0 / 20, 2, 16);
    look.shadow = 0x80000000;
    look.shadowBlur = 8;
    look.shadowX = look.shadowY = 3;
    return look;
}

std::uint32_t borderFor(std::uint32_t fill) {
    const auto darker = [fill](int shift) { return (fill >> shift & 255) * 7 / 10 << shift; };
    return (fill & 0xFF000000U) | darker(16) | darker(8) | darker(0);
}

/// Luma by the weights of ITU-R BT.709.
std::uint32_t textFor(std::uint32_t fill) {
    const double luma = 0.2126 * (fill >> 16 & 255) + 0.7152 * (fill >> 8 & 255) + 0.0722 * (fill & 255);
    return fill >> 24 >= 128 && luma < 150 ? paper : ink;
}

} // namespace KestoRenderLib
