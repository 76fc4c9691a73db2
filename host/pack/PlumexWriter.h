#pragma once

#include "pack/PackReport.h"
#include "pack/PackRequest.h"

#include <vector>

namespace KestoHost {

/// Writes the parts as members of a new `.plumex` file, `report.output`, with a manifest. What becomes of
/// them, and a failure, goes into `report`.
void writePlumex(const std::vector<PackPart>& parts, PackReport& report);

} // namespace KestoHost
