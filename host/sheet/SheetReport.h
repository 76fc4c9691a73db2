#pragma once

#include "Report.h"
#include "sheet/SheetLayout.h"
#include "sheet/SheetRequest.h"

#include <optional>
#include <string>
#include <vector>

namespace KestoHost {

/// What one sheet came to.
struct SheetReport {
    SheetRequest request;
    std::string sourceKind; ///< as in `ThumbReport`
    ModelTime duration = 0;
    std::vector<ModelTime> times;
    SheetLayout layout;
    std::vector<int> holes; ///< tiles without a picture, ascending
    double milliseconds = 0;
    std::optional<Failure> failure;
};

/// The one object of `--json`. The keys "reason" and "message" are there after a failure alone; "tiles" is
/// then empty, and sizes and style are null.
std::string jsonText(const SheetReport& report);

/// What the sheet does not show as it was asked for, one sentence each.
std::vector<std::string> warningsOf(const SheetReport& report);

} // namespace KestoHost
