#pragma once

#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace KestoHost {

/// Adds `thumb`: one thumbnail of one input, written as a picture file. The run leaves its outcome in
/// `status`, which must live as long as `program`.
void addThumbCommand(CLI::App& program, ExitStatus& status);

} // namespace KestoHost
