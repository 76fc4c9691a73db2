#pragma once

#include "sheet/SheetReport.h"

namespace KestoHost {

/// Makes a sheet and the files that were asked for with it: all of them, or none and a failure.
SheetReport makeSheet(const SheetRequest& request);

} // namespace KestoHost
