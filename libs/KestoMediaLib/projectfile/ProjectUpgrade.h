#pragma once

#include <nlohmann/json_fwd.hpp>

namespace KestoMediaLib::ProjectReading {

constexpr int currentVersion = 2;

/// Brings a project from `version`, 1 to the current one, up to the current one, step by step. What is wrong
/// with it stays wrong, for the reader to tell.
void upgradeToCurrent(nlohmann::json& project, int version);

} // namespace KestoMediaLib::ProjectReading
