#include "pack/PackReport.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace KestoHost {

namespace {

using Json = nlohmann::ordered_json;

Json partsOf(const PackReport& report) {
    Json parts = Json::array();
    for (const PackedPart& packed : report.parts)
        parts.push_back({{"role", packed.part.role},
                         {"input", packed.part.input},
                         {"member", packed.member.empty() ? Json() : Json(packed.member)},
                         {"copied", packed.isCopied}});
    return parts;
}

} // namespace

std::string jsonText(const PackReport& report) {
    Json object = {{"output", report.output},
                   {"container", report.container},
                   {"parts", report.failure ? Json::array() : partsOf(report)},
                   {"warning", report.warning.empty() ? Json() : Json(report.warning)},
                   {"milliseconds", std::round(report.milliseconds * 1000) / 1000}};
    if (report.failure) {
        object["reason"] = report.failure->reason;
        object["message"] = report.failure->message;
    }
    return object.dump(2, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

} // namespace KestoHost
