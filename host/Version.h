#pragma once

#include <string>

namespace KestoHost {

/// Program version, library version and what can be read, one line each.
std::string versionText();

} // namespace KestoHost
