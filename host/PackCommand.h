#pragma once

#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace KestoHost {

/// Adds `pack`: a recording made of ordinary files. The run leaves its outcome in `status`, which must live
/// as long as `program`.
void addPackCommand(CLI::App& program, ExitStatus& status);

} // namespace KestoHost
