#include "sheet/SheetReport.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace KestoHost {

namespace {

using Json = nlohmann::ordered_json;

Json nameOrNull(const std::string& name) {
    return name.empty() ? Json() : Json(name);
}

double toThreeDigits(double milliseconds) {
    return std::round(milliseconds * 1000) / 1000;
}

/// To the microsecond, as all that is printed.
double printedSeconds(ModelTime time) {
    return std::round(secondsOf(time) * 1e6) / 1e6;
}

bool isAmong(const std::vector<int>& sorted, std::size_t index) {
    return std::binary_search(sorted.begin(), sorted.end(), static_cast<int>(index));
}

Json tilesOf(const SheetReport& report) {
    Json tiles = Json::array();
    for (std::size_t i = 0; i < report.layout.tiles.size(); ++i) {
        const CRect& place = report.layout.tiles[i];
        tiles.push_back({{"time", printedSeconds(report.times[i])},
                         {"x", place.left},
                         {"y", place.top},
                         {"width", place.right - place.left},
                         {"height", place.bottom - place.top},
                         {"hasPicture", !isAmong(report.holes, i)},
                         {"clipped", isAmong(report.layout.clipped, i)}});
    }
    return tiles;
}

void addSheet(Json& object, const SheetReport& report) {
    const SheetLayout& layout = report.layout;
    object["width"] = layout.width;
    object["height"] = layout.height;
    object["style"] = wordOf(layout.style);
    object["tileWidth"] = layout.tile.width;
    object["tileHeight"] = layout.tile.height;
    object["duration"] = printedSeconds(report.duration);
    object["tiles"] = tilesOf(report);
}

} // namespace

std::string jsonText(const SheetReport& report) {
    Json object = {
        {"input", report.request.input},
        {"output", report.request.output},
        {"vtt", nameOrNull(report.request.vtt)},
        {"html", nameOrNull(report.request.html)},
        {"width", nullptr},
        {"height", nullptr},
        {"sourceKind", report.sourceKind},
        {"style", nullptr},
        {"tileWidth", nullptr},
        {"tileHeight", nullptr},
        {"duration", nullptr},
        {"tiles", Json::array()},
        {"milliseconds", toThreeDigits(report.milliseconds)},
    };
    if (report.failure) {
        object["reason"] = report.failure->reason;
        object["message"] = report.failure->message;
    } else {
        addSheet(object, report);
    }
    return object.dump(2, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

std::vector<std::string> warningsOf(const SheetReport& report) {
    std::vector<std::string> warnings;
    if (!report.layout.clipped.empty())
        warnings.push_back(fmt::format("\"{}\": {}", report.request.output, clippingWarning(report.layout)));
    if (!report.holes.empty())
        warnings.push_back(fmt::format("\"{}\": {} of {} tiles have no picture and are left transparent.",
                                       report.request.output, report.holes.size(), report.times.size()));
    return warnings;
}

} // namespace KestoHost
