#pragma once

#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace KestoHost {

/// Adds `ls`: tells what a container holds. The run leaves its outcome in `status`, which must live as long
/// as `program`.
void addLsCommand(CLI::App& program, ExitStatus& status);

} // namespace KestoHost
