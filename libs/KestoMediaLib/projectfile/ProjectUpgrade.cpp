#include "KestoMediaLib/projectfile/ProjectUpgrade.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <utility>

namespace KestoMediaLib::ProjectReading {

namespace {

using nlohmann::json;

/// Version 1 had the canvas as an array of width and height.
void upgradeTo2(json& project) {
    const auto canvas = project.find("canvas");
    if (canvas == project.end() || !canvas->is_array() || canvas->size() != 2)
        return;
    json members = {{"width", (*canvas)[0]}, {"height", (*canvas)[1]}};
    *canvas = std::move(members);
}

constexpr std::array<void (*)(json&), currentVersion - 1> steps = {upgradeTo2};

} // namespace

void upgradeToCurrent(json& project, int version) {
    for (std::size_t step = static_cast<std::size_t>(version) - 1; step < steps.size(); ++step)
        steps[step](project);
    project["version"] = currentVersion;
}

} // namespace KestoMediaLib::ProjectReading
