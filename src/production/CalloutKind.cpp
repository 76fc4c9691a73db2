#include "production/CalloutKind.h"

#include "platform/KestoMediaLibTools.h"

#include <string_view>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::Callout;
using KestoMediaLib::VectorNode;
using TextAttribute = KestoMediaLib::Attribute<std::string>;

boost::shared_ptr<const VectorNode> DrawingOf(const boost::shared_ptr<const Callout>& callout) {
    if (!callout)
        return {};
    const auto attribute = callout->vectorNode();
    return attribute ? attribute->value() : boost::shared_ptr<const VectorNode>();
}

bool HasValue(const boost::shared_ptr<const TextAttribute>& attribute, std::string_view value) {
    return attribute && attribute->value() == value;
}

bool HasKind(const boost::shared_ptr<const Callout>& callout, std::string_view kind) {
    const auto drawing = DrawingOf(callout);
    return drawing && drawing->kind() == kind;
}

bool IsRemix(const boost::shared_ptr<const Callout>& callout, std::string_view shape) {
    const auto drawing = DrawingOf(callout);
    return drawing && drawing->kind() == "remix" && HasValue(drawing->shapeAttribute(), shape);
}

} // namespace

bool IsRemixArrow(const boost::shared_ptr<const Callout>& callout) {
    return IsRemix(callout, "arrow");
}

bool IsRemixText(const boost::shared_ptr<const Callout>& callout) {
    return IsRemix(callout, "text");
}

bool IsTypeWinLine(const boost::shared_ptr<const Callout>& callout) {
    return HasKind(callout, "TypeWinLine");
}

bool IsTypeWinSVG(const boost::shared_ptr<const Callout>& callout) {
    return HasKind(callout, "TypeWinSVG");
}

bool IsBoldTextArrow(const boost::shared_ptr<const Callout>& callout) {
    const auto drawing = DrawingOf(callout);
    return drawing && HasValue(drawing->styleAttribute(), "bold") &&
           HasValue(drawing->shapeAttribute(), "text-arrow");
}

bool HasDrawParam(const boost::shared_ptr<const Callout>& callout, const std::string& name) {
    const auto drawing = DrawingOf(callout);
    return drawing && !name.empty() && KestoMediaLibTools::hasVectorNodeParam<__int64>(drawing, name);
}

__int64 CalloutFadeTime(const boost::shared_ptr<const Callout>& callout) {
    static const std::string fade = "DrawPercentageFade";
    if (!HasDrawParam(callout, "DrawTime"))
        return 0;
    const KestoMediaLib::EdgeModificationStore& store = callout->edgeModifications();
    if (store.modifications(fade).empty())
        return 0;
    return KestoMediaLib::RationalUtil::toKestoTime(store.time(fade));
}

} // namespace KestoThumbnailer
