#include "KestoRenderLib/CalloutLookReader.h"

#include "KestoRenderLib/CalloutDefaults.h"
#include "KestoRenderLib/SvgFile.h"

#include "KestoMediaLib/CalloutParams.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>
#include <utility>

namespace KestoRenderLib {

namespace {

using KestoMediaLib::VectorNode;
using Shape = CalloutLook::Shape;

constexpr std::array<std::pair<std::string_view, Shape>, 11> shapes = {{
    {"arrow", Shape::Arrow},
    {"text", Shape::Text},
    {"text-arrow", Shape::TextArrow},
    {"rectangle", Shape::Rectangle},
    {"rounded-rectangle", Shape::RoundedRectangle},
    {"ellipse", Shape::Ellipse},
    {"line", Shape::Line},
    {"speech-bubble", Shape::SpeechBubble},
    {"highlight", Shape::Highlight},
    {"blur-box", Shape::BlurBox},
    {"spotlight", Shape::Spotlight},
}};

/// Text beyond this many bytes is left out: more than any callout shows.
constexpr std::size_t mostText = 20000;

/// The start of a text, without a part of a character at its end.
std::string shortened(std::string text) {
    if (text.size() <= mostText)
        return text;
    std::size_t end = mostText;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        --end;
    text.resize(end);
    return text;
}

bool isBlankText(const std::string& text) {
    return text.find_first_not_of(" \t\r\n") == text.npos;
}

bool alphaIsZero(std::uint32_t argb) {
    return argb >> 24 == 0;
}

/// A drawing's parameters. What is of another type, or no number, counts as left out.
class Params {
public:
    explicit Params(const VectorNode& drawing)
        : node(drawing) {}

    bool has(const std::string& name) const { return node.param(name).has_value(); }

    void read(const std::string& name, double lowest, double highest, double& value) const {
        const auto param = node.param(name);
        if (!param)
            return;
        const auto* whole = std::get_if<__int64>(&*param);
        const auto* fraction = std::get_if<double>(&*param);
        const double given = whole ? static_cast<double>(*whole) : fraction ? *fraction : NAN;
        if (std::isfinite(given))
            value = std::clamp(given, lowest, highest);
    }
    void read(const std::string& name, double highest, double& value) const { read(name, 0, highest, value); }

    bool readColor(const std::string& name, std::uint32_t& value) const {
        const auto param = node.param(name);
        const auto* color = param ? std::get_if<__int64>(&*param) : nullptr;
        if (color)
            value = static_cast<std::uint32_t>(*color);
        return color != nullptr;
    }

    void read(const std::string& name, bool& value) const {
        value = KestoMediaLib::paramOr<bool>(node, name, value);
    }
    void read(const std::string& name, std::string& value) const {
        value = KestoMediaLib::paramOr<std::string>(node, name, std::move(value));
    }

    /// The names stand in the order of the enumeration.
    template <class Choice, std::size_t count>
    void read(const std::string& name, const std::array<std::string_view, count>& names,
              Choice& value) const {
        const auto word = KestoMediaLib::paramOr<std::string>(node, name, {});
        const auto found = std::find(names.begin(), names.end(), word);
        if (found != names.end())
            value = static_cast<Choice>(found - names.begin());
    }

private:
    const VectorNode& node;
};

constexpr std::array<std::string_view, 4> dashNames = {"solid", "dash", "dot", "dash-dot"};
constexpr std::array<std::string_view, 3> capNames = {"butt", "round", "square"};
constexpr std::array<std::string_view, 4> headNames = {"triangle", "swept", "open", "circle"};
constexpr std::array<std::string_view, 4> headAtNames = {"end", "start", "both", "none"};
constexpr std::array<std::string_view, 3> acrossNames = {"left", "center", "right"};
constexpr std::array<std::string_view, 3> downNames = {"top", "middle", "bottom"};

void readColors(const Params& params, bool isBold, CalloutLook& look) {
    const bool hasFill = params.readColor("FillColor", look.fill);
    if (hasFill && look.shape != Shape::BlurBox && look.shape != Shape::Spotlight)
        look.border = borderFor(look.fill);
    const bool isLine = look.shape == Shape::Arrow || look.shape == Shape::Line;
    if (hasFill && isLine)
        look.border = look.fill;
    if (params.readColor("BorderColor", look.border) && look.borderWidth == 0)
        look.borderWidth = usualBorder(isBold, look.width, look.height);
    params.read("BorderWidth", 1000, look.borderWidth);
    params.read("DashStyle", dashNames, look.dash);
    params.read("CornerRadius", 16384, look.cornerRadius);
    if (alphaIsZero(look.border))
        look.borderWidth = 0;
}

void readLine(const Params& params, CalloutLook& look) {
    params.read("StartX", -10, 10, look.startX);
    params.read("StartY", -10, 10, look.startY);
    params.read("EndX", -10, 10, look.endX);
    params.read("EndY", -10, 10, look.endY);
    params.read("StrokeWidth", 1000, look.strokeWidth);
    params.read("LineCap", capNames, look.cap);
    params.read("HeadStyle", headNames, look.headStyle);
    params.read("HeadAt", headAtNames, look.headAt);
    look.headSize = look.shape == Shape::TextArrow
                        ? std::min(look.width, look.height) * 0.5
                        : std::max(look.strokeWidth * 4, std::min(look.width, look.height) / 8);
    params.read("HeadSize", 1000, look.headSize);
    params.read("TailX", -10, 10, look.tailX);
    params.read("TailY", -10, 10, look.tailY);
}

void readText(const Params& params, bool isBold, CalloutLook& look) {
    if (look.shape == Shape::TextArrow && !isBold)
        look.textColor = look.border;
    else
        look.textColor = textFor(look.fill);
    params.readColor("TextColor", look.textColor);
    params.read("Text", look.text);
    look.text = isBlankText(look.text) ? std::string() : shortened(std::move(look.text));
    params.read("Font", look.font);
    params.read("FontSize", 1, 2000, look.fontSize);
    bool heavy = look.fontWeight >= 700;
    params.read("FontBold", heavy);
    double weight = heavy ? 700 : 400;
    params.read("FontWeight", 100, 1000, weight);
    look.fontWeight = static_cast<int>(std::lround(weight));
    params.read("FontItalic", look.italic);
    params.read("FontUnderline", look.underlined);
    params.read("Alignment", acrossNames, look.across);
    params.read("VerticalAlignment", downNames, look.down);
    params.read("Padding", 1000, look.padding);
    params.read("Wrap", look.wraps);
    params.read("FitText", look.fits);
}

void readShadow(const Params& params, CalloutLook& look) {
    params.read("Shadow", look.hasShadow);
    params.readColor("ShadowColor", look.shadow);
    double opacity = 1;
    params.read("ShadowOpacity", 1, opacity);
    const auto alpha = static_cast<std::uint32_t>(std::lround((look.shadow >> 24) * opacity));
    look.shadow = (look.shadow & 0xFFFFFFU) | alpha << 24;
    params.read("ShadowBlur", 500, look.shadowBlur);
    params.read("ShadowOffsetX", -1000, 1000, look.shadowX);
    params.read("ShadowOffsetY", -1000, 1000, look.shadowY);
}

std::optional<Shape> shapeOf(const VectorNode& node, const Params& params) {
    const std::string kind = node.kind();
    if (kind == "TypeWinLine")
        return Shape::Line;
    const bool drawsItself = kind == "TypeWinSVG" || kind == "MacSVG";
    if (drawsItself && (params.has("Svg") || params.has("SvgFile")))
        return Shape::Svg;
    const auto attribute = node.shapeAttribute();
    if (!attribute || (!drawsItself && kind != "remix"))
        return std::nullopt;
    const std::string name = attribute->value();
    const auto found = std::find_if(shapes.begin(), shapes.end(),
                                    [&name](const auto& shape) { return shape.first == name; });
    return found == shapes.end() ? std::nullopt : std::optional(found->second);
}

/// When a callout that draws itself is done, in model time; 0 for one that does not.
__int64 drawingTime(const KestoMediaLib::Callout& callout, const VectorNode& node, const Params& params) {
    const std::string kind = node.kind();
    double seconds = 0;
    params.read("DrawTime", 1e9, seconds);
    if (!(seconds > 0) || (kind != "TypeWinSVG" && kind != "MacSVG"))
        return 0;
    const std::string edge = kind == "MacSVG" ? "Visual" : "DrawPercentageFade";
    const auto& edges = callout.edgeModifications();
    if (!edges.modifications(edge).empty())
        return KestoMediaLib::RationalUtil::toKestoTime(edges.time(edge));
    return std::llround(seconds * static_cast<double>(KestoMediaLib::modelTimePerSecond));
}

double progressAt(__int64 time, __int64 done) {
    if (time >= done)
        return 1;
    return time <= 0 ? 0 : static_cast<double>(time) / static_cast<double>(done);
}

bool hasSomething(const CalloutLook& look) {
    switch (look.shape) {
    case Shape::Svg:
        return !look.svg.empty();
    case Shape::Arrow:
    case Shape::Line:
        return look.strokeWidth > 0 && !alphaIsZero(look.border);
    default:
        return !alphaIsZero(look.fill) || look.borderWidth > 0 ||
               (!look.text.empty() && !alphaIsZero(look.textColor));
    }
}

bool isBold(const VectorNode& node) {
    const auto style = node.styleAttribute();
    return style && style->value() == "bold";
}

} // namespace

std::optional<CalloutLook> readCalloutLook(const boost::shared_ptr<const KestoMediaLib::Callout>& callout,
                                           const CalloutBox& box, __int64 time) {
    const auto attribute = callout ? callout->vectorNode() : nullptr;
    const auto node = attribute ? attribute->value() : nullptr;
    if (!node || !(box.width > 0 && box.height > 0))
        return std::nullopt;
    const Params params(*node);
    const auto shape = shapeOf(*node, params);
    if (!shape)
        return std::nullopt;
    const bool bold = isBold(*node);
    CalloutLook look = defaultLook(*shape, bold, box.width, box.height);
    readColors(params, bold, look);
    readLine(params, look);
    readText(params, bold, look);
    readShadow(params, look);
    params.read("Svg", look.svg);
    if (*shape == Shape::Svg && look.svg.empty())
        look.svg = svgFromFile(KestoMediaLib::paramOr<std::string>(*node, "SvgFile", {}));
    look.progress = progressAt(time, drawingTime(*callout, *node, params));
    return hasSomething(look) ? std::optional(std::move(look)) : std::nullopt;
}

} // namespace KestoRenderLib
