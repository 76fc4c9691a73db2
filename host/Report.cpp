#include "Report.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace KestoHost {

namespace {

using Json = nlohmann::ordered_json;

constexpr int allOnOneLine = -1;

void addFrame(Json& object, const DeliveredFrame& frame) {
    object["frameTime"] = std::round(frame.seconds * 1e6) / 1e6;
    object["frame"] = frame.number ? Json(*frame.number) : Json();
}

Json objectOf(const ThumbReport& report) {
    Json object = {
        {"input", report.input},
        {"output", report.output},
        {"width", nullptr},
        {"height", nullptr},
        {"sourceKind", report.sourceKind},
        {"time", report.seconds},
        {"milliseconds", std::round(report.milliseconds * 1000) / 1000},
    };
    if (report.failure) {
        object["reason"] = report.failure->reason;
        object["message"] = report.failure->message;
    } else {
        object["width"] = report.width;
        object["height"] = report.height;
        if (report.frame)
            addFrame(object, *report.frame);
    }
    return object;
}

std::string textOf(const Json& object, int indent) {
    return object.dump(indent, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

} // namespace

std::string jsonText(const ThumbReport& report) {
    return textOf(objectOf(report), 2);
}

std::string jsonLine(const ThumbReport& report) {
    return textOf(objectOf(report), allOnOneLine);
}

} // namespace KestoHost
