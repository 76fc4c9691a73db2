#include "KestoMediaLib/projectfile/ValueReaders.h"

#include <nlohmann/json.hpp>

#include <array>
#include <utility>

namespace KestoMediaLib::ProjectReading {

namespace {

constexpr std::array<std::pair<std::string_view, Easing>, 5> easings = {{
    {"linear", Easing::Linear},
    {"easeIn", Easing::EaseIn},
    {"easeOut", Easing::EaseOut},
    {"easeInOut", Easing::EaseInOut},
    {"hold", Easing::Hold},
}};

Easing readEasing(const JsonPlace& place, FirstError& errors) {
    std::array<std::string_view, easings.size()> names;
    for (std::size_t i = 0; i < easings.size(); ++i)
        names[i] = easings[i].first;
    const std::string chosen = readChoice(place, names, errors);
    for (const auto& [name, easing] : easings)
        if (name == chosen)
            return easing;
    return Easing::Linear;
}

/// Key frames of one number, or of two that go side by side.
struct KeyFramePair {
    std::vector<KeyFrame> horizontal;
    std::vector<KeyFrame> vertical;
};

enum class Values { Single, Pairs };

std::pair<double, double> readValues(const JsonPlace& place, Values values, const NumberRule& rule,
                                     FirstError& errors) {
    if (values == Values::Single) {
        const double number = readNumber(place, rule, errors);
        return {number, number};
    }
    const auto pair = elementsOf(place, errors);
    if (pair.size() != 2) {
        errors.expected(place, "an array of two numbers");
        return {rule.lowest, rule.lowest};
    }
    return {readNumber(pair[0], rule, errors), readNumber(pair[1], rule, errors)};
}

void readKeyFrame(const JsonPlace& place, Values values, const NumberRule& rule, ReadContext& context,
                  KeyFramePair& frames) {
    context.spend(ReadContext::keyFrameCost, place);
    ObjectReader object(place, context.errors);
    const auto timePlace = object.required("time");
    const auto valuePlace = object.required("value");
    const auto easingPlace = object.optional("easing");
    object.finish();
    if (!timePlace || !valuePlace)
        return;
    const SafeRational time = RationalUtil::toSeconds(readTime(*timePlace, context.errors));
    if (!frames.horizontal.empty() && time <= frames.horizontal.back().time)
        context.errors.expected(*timePlace, "a time after that of the key frame before");
    const auto [x, y] = readValues(*valuePlace, values, rule, context.errors);
    const Easing easing = easingPlace ? readEasing(*easingPlace, context.errors) : Easing::Linear;
    frames.horizontal.push_back({time, x, easing});
    frames.vertical.push_back({time, y, easing});
}

KeyFramePair readKeyFrames(const JsonPlace& place, Values values, const NumberRule& rule,
                           ReadContext& context) {
    KeyFramePair frames;
    ObjectReader object(place, context.errors);
    if (const auto list = object.required("keyFrames")) {
        for (const JsonPlace& frame : elementsOf(*list, context.errors)) {
            readKeyFrame(frame, values, rule, context, frames);
            if (context.errors.any())
                break;
        }
        if (frames.horizontal.empty())
            context.errors.expected(*list, "at least one key frame");
    }
    object.finish();
    if (context.errors.any())
        frames = {{KeyFrame{}}, {KeyFrame{}}};
    return frames;
}

/// Whether the first key frame's value is no array; what is wrong beyond that is told on reading.
bool hasSingleValues(const nlohmann::json& object) {
    const auto frames = object.find("keyFrames");
    if (frames == object.end() || !frames->is_array() || frames->empty() || !frames->front().is_object())
        return false;
    const auto value = frames->front().find("value");
    return value != frames->front().end() && !value->is_array();
}

KeyFramedVector vectorOf(KeyFramePair frames) {
    return {KeyFramedParam(std::move(frames.horizontal)), KeyFramedParam(std::move(frames.vertical))};
}

} // namespace

KeyFramedParam readAnimated(const JsonPlace& place, const NumberRule& rule, ReadContext& context) {
    if (!place.value.is_object())
        return readNumber(place, rule, context.errors);
    return KeyFramedParam(readKeyFrames(place, Values::Single, rule, context).horizontal);
}

KeyFramedVector readAnimatedPair(const JsonPlace& place, const NumberRule& rule, ReadContext& context) {
    if (place.value.is_object())
        return vectorOf(readKeyFrames(place, Values::Pairs, rule, context));
    if (!place.value.is_array() || place.value.size() != 2) {
        context.errors.expected(place, "an array of two values, or key frames of such");
        return {};
    }
    const auto pair = elementsOf(place, context.errors);
    return {readAnimated(pair[0], rule, context), readAnimated(pair[1], rule, context)};
}

KeyFramedVector readAnimatedScale(const JsonPlace& place, const NumberRule& rule, ReadContext& context) {
    if (place.value.is_number()) {
        const double number = readNumber(place, rule, context.errors);
        return {number, number};
    }
    if (place.value.is_object() && hasSingleValues(place.value))
        return vectorOf(readKeyFrames(place, Values::Single, rule, context));
    return readAnimatedPair(place, rule, context);
}

} // namespace KestoMediaLib::ProjectReading
