#include "KestoMediaLib/projectfile/ContentReaders.h"

#include "KestoMediaLib/CalloutParams.h"
#include "KestoMediaLib/projectfile/ValueReaders.h"

#include <boost/make_shared.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <utility>

namespace KestoMediaLib::ProjectReading {

namespace {

constexpr NumberRule positionRule = {"pixels", -1e6, 1e6};
constexpr NumberRule scaleRule = {"a scale", -1000, 1000};
constexpr NumberRule anchorRule = {"a part of the size", -1000, 1000};
constexpr NumberRule degreesRule = {"degrees", -1e6, 1e6};
constexpr NumberRule opacityRule = {"an opacity", 0, 1};
constexpr NumberRule cropRule = {"a part of the size", 0, 1};
constexpr NumberRule extentRule = {"pixels", 1, largestCanvas};
constexpr NumberRule streamRule = {"a stream number", -1, 1000};

constexpr std::array<std::string_view, 2> edgeNames = {"start", "end"};

void readCrop(const JsonPlace& place, ReadContext& context, Placement& placement) {
    ObjectReader object(place, context.errors);
    for (const auto& [name, side] : {std::pair{"left", &placement.cropLeft},
                                     {"top", &placement.cropTop},
                                     {"right", &placement.cropRight},
                                     {"bottom", &placement.cropBottom}})
        if (const auto member = object.optional(name))
            *side = readAnimated(*member, cropRule, context);
    object.finish();
}

VectorNodeParam readNumberParam(const JsonPlace& place, const CalloutParam& param, FirstError& errors) {
    const NumberRule rule = {"a number", param.lowest, param.highest};
    const double number = readNumber(place, rule, errors);
    if (param.type == CalloutParam::Type::Count && place.value.is_number_integer())
        return static_cast<__int64>(number);
    return number;
}

VectorNodeParam readParam(const JsonPlace& place, const CalloutParam& param, ReadContext& context) {
    FirstError& errors = context.errors;
    switch (param.type) {
    case CalloutParam::Type::Text:
        return readText(place, errors);
    case CalloutParam::Type::Choice:
        return readChoice(place, param.choices, errors);
    case CalloutParam::Type::Flag:
        return readFlag(place, errors);
    case CalloutParam::Type::Color:
        return __int64{readColor(place, errors)};
    case CalloutParam::Type::Path:
        return readPath(place, context);
    case CalloutParam::Type::Number:
    case CalloutParam::Type::Count:
        break;
    }
    return readNumberParam(place, param, errors);
}

VectorDrawing::Params readParams(const JsonPlace& place, ReadContext& context) {
    VectorDrawing::Params params;
    ObjectReader object(place, context.errors);
    for (const CalloutParam& param : calloutParams())
        if (const auto member = object.optional(param.name))
            params.emplace(param.name, readParam(*member, param, context));
    object.finish();
    return params;
}

boost::shared_ptr<const VectorNode> readDrawing(const JsonPlace& place, ReadContext& context) {
    FirstError& errors = context.errors;
    ObjectReader object(place, errors);
    const auto kind = object.required("kind");
    const auto shape = object.required("shape");
    const auto style = object.optional("style");
    const auto params = object.optional("params");
    object.finish();
    return boost::make_shared<VectorDrawing>(kind ? readChoice(*kind, calloutKinds(), errors) : "",
                                             shape ? readChoice(*shape, calloutShapes(), errors) : "",
                                             style ? readChoice(*style, calloutStyles(), errors)
                                                   : std::string(calloutStyles().front()),
                                             params ? readParams(*params, context) : VectorDrawing::Params());
}

EdgeModification readEdge(const JsonPlace& place, FirstError& errors) {
    EdgeModification modification;
    ObjectReader object(place, errors);
    if (const auto name = object.required("name"))
        modification.name = readText(*name, errors);
    if (const auto edge = object.required("edge"))
        modification.edge = readChoice(*edge, edgeNames, errors) == "end" ? EdgeModification::Edge::End
                                                                          : EdgeModification::Edge::Start;
    if (const auto duration = object.required("duration"))
        modification.duration = RationalUtil::toSeconds(readTime(*duration, errors));
    object.finish();
    return modification;
}

} // namespace

SourceFile readSourceFile(ObjectReader& object, ReadContext& context) {
    SourceFile source;
    if (const auto file = object.required("file"))
        source.fileName = readPath(*file, context);
    if (const auto stream = object.optional("stream"))
        source.streamIndex = static_cast<int>(readWhole(*stream, streamRule, context.errors));
    return source;
}

Placement readPlacement(ObjectReader& object, ReadContext& context) {
    Placement placement;
    if (const auto position = object.optional("position"))
        placement.position = readAnimatedPair(*position, positionRule, context);
    if (const auto scale = object.optional("scale"))
        placement.scale = readAnimatedScale(*scale, scaleRule, context);
    if (const auto anchor = object.optional("anchor"))
        placement.anchor = readAnimatedPair(*anchor, anchorRule, context);
    if (const auto rotation = object.optional("rotation"))
        placement.rotation = readAnimated(*rotation, degreesRule, context);
    if (const auto opacity = object.optional("opacity"))
        placement.opacity = readAnimated(*opacity, opacityRule, context);
    if (const auto crop = object.optional("crop"))
        readCrop(*crop, context, placement);
    return placement;
}

ReadExtent readExtent(ObjectReader& object, ReadContext& context) {
    ReadExtent extent;
    if (const auto width = object.optional("width"))
        extent.width = readAnimated(*width, extentRule, context);
    if (const auto height = object.optional("height"))
        extent.height = readAnimated(*height, extentRule, context);
    return extent;
}

boost::shared_ptr<CalloutMedia> readCallout(ObjectReader& object, ReadContext& context) {
    const auto drawing = object.required("drawing");
    auto callout = boost::make_shared<CalloutMedia>(drawing ? readDrawing(*drawing, context) : nullptr);
    if (const auto edges = object.optional("edges"))
        for (const JsonPlace& edge : elementsOf(*edges, context.errors))
            callout->addEdgeModification(readEdge(edge, context.errors));
    return callout;
}

} // namespace KestoMediaLib::ProjectReading
