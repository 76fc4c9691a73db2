#pragma once

#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace KestoHost {

/// Adds `batch`: one thumbnail each of any number of inputs, written into one folder. The run leaves its
/// outcome in `status`, which must live as long as `program`.
void addBatchCommand(CLI::App& program, ExitStatus& status);

} // namespace KestoHost
