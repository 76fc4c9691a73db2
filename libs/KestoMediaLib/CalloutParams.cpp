#include "KestoMediaLib/CalloutParams.h"

#include <array>

namespace KestoMediaLib {

namespace {

using Type = CalloutParam::Type;

constexpr std::array<std::string_view, 4> kinds = {"remix", "TypeWinLine", "TypeWinSVG", "MacSVG"};

constexpr std::array<std::string_view, 11> shapes = {
    "arrow", "text",          "text-arrow", "rectangle", "rounded-rectangle", "ellipse",
    "line",  "speech-bubble", "highlight",  "blur-box",  "spotlight",
};

constexpr std::array<std::string_view, 2> styles = {"plain", "bold"};

constexpr std::array<std::string_view, 3> alignments = {"left", "center", "right"};
constexpr std::array<std::string_view, 3> verticalAlignments = {"top", "middle", "bottom"};

constexpr std::array<CalloutParam, 29> params = {{
    {"Alignment", Type::Choice, 0, 0, alignments},
    {"BlurRadius", Type::Number, 0, 500},
    {"BorderColor", Type::Color},
    {"BorderWidth", Type::Number, 0, 1000},
    {"CornerRadius", Type::Number, 0, 16384},
    {"DrawTime", Type::Count, 0, 1e9},
    {"EndX", Type::Number, -10, 10},
    {"EndY", Type::Number, -10, 10},
    {"FillColor", Type::Color},
    {"Font", Type::Text},
    {"FontBold", Type::Flag},
    {"FontItalic", Type::Flag},
    {"FontSize", Type::Number, 1, 2000},
    {"HeadSize", Type::Number, 0, 1000},
    {"Padding", Type::Number, 0, 1000},
    {"Shadow", Type::Flag},
    {"ShadowBlur", Type::Number, 0, 500},
    {"ShadowColor", Type::Color},
    {"ShadowOffsetX", Type::Number, -1000, 1000},
    {"ShadowOffsetY", Type::Number, -1000, 1000},
    {"StartX", Type::Number, -10, 10},
    {"StartY", Type::Number, -10, 10},
    {"StrokeWidth", Type::Number, 0, 1000},
    {"Svg", Type::Text},
    {"TailX", Type::Number, -10, 10},
    {"TailY", Type::Number, -10, 10},
    {"Text", Type::Text},
    {"TextColor", Type::Color},
    {"VerticalAlignment", Type::Choice, 0, 0, verticalAlignments},
}};

} // namespace

std::span<const std::string_view> calloutKinds() {
    return kinds;
}

std::span<const std::string_view> calloutShapes() {
    return shapes;
}

std::span<const std::string_view> calloutStyles() {
    return styles;
}

std::span<const CalloutParam> calloutParams() {
    return params;
}

ArgbColor colorParamOr(const VectorNode& node, const std::string& name, ArgbColor otherwise) {
    return static_cast<ArgbColor>(paramOr<__int64>(node, name, otherwise));
}

} // namespace KestoMediaLib
