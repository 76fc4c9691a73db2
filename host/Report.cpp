#include "Report.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace KestoHost {

std::string jsonText(const ThumbReport& report) {
    nlohmann::ordered_json object = {
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
    }
    return object.dump(2, ' ', /*ensure_ascii=*/false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace KestoHost
