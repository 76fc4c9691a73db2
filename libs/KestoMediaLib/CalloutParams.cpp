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

constexpr std::array<std::string_view, 4> dashes = {"solid", "dash", "dot", "dash-dot"};
constexpr std::array<std::string_view, 3> caps = {"butt", "round", "square"};
constexpr std::array<std::string_view, 4> heads = {"triangle", "swept", "open", "circle"};
constexpr std::array<std::string_view, 4> headEnds = {"end", "start", "both", "none"};

constexpr std::array<CalloutParam, 39> params = {{
    {"Alignment", Type::Choice, 0, 0, alignments},
    {"BlurRadius", Type::Number, 0, 500},
    {"BorderColor", Type::Color},
    {"BorderWidth", Type::Number, 0, 1000},
    {"CornerRadius", Type::Number, 0, 16384},
    {"DashStyle", Type::Choice, 0, 0, dashes},
    {"DrawTime", Type::Count, 0, 1e9},
    {"EndX", Type::Number, -10, 10},
    {"EndY", Type::Number, -10, 10},
    {"FillColor", Type::Color},
    {"FitText", Type::Flag},
    {"Font", Type::Text},
    {"FontBold", Type::Flag},
    {"FontItalic", Type::Flag},
    {"FontSize", Type::Number, 1, 2000},
    {"FontUnderline", Type::Flag},
    {"FontWeight", Type::Number, 100, 1000},
    {"HeadAt", Type::Choice, 0, 0, headEnds},
    {"HeadSize", Type::Number, 0, 1000},
    {"HeadStyle", Type::Choice, 0, 0, heads},
    {"LineCap", Type::Choice, 0, 0, caps},
    {"Padding", Type::Number, 0, 1000},
    {"Shadow", Type::Flag},
    {"ShadowBlur", Type::Number, 0, 500},
    {"ShadowColor", Type::Color},
    {"ShadowOffsetX", Type::Number, -1000, 1000},
    {"ShadowOffsetY", Type::Number, -1000, 1000},
    {"ShadowOpacity", Type::Number, 0, 1},
    {"StartX", Type::Number, -10, 10},
    {"StartY", Type::Number, -10, 10},
    {"StrokeWidth", Type::Number, 0, 1000},
    {"Svg", Type::Text},
    {"SvgFile", Type::Path},
    {"TailX", Type::Number, -10, 10},
    {"TailY", Type::Number, -10, 10},
    {"Text", Type::Text},
    {"TextColor", Type::Color},
    {"VerticalAlignment", Type::Choice, 0, 0, verticalAlignments},
    {"Wrap", Type::Flag},
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
