#pragma once

#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace KestoHost {

/// Adds `callout`: one callout, made of words and values and drawn as a picture file. The run leaves its
/// outcome in `status`, which must live as long as `program`.
void addCalloutCommand(CLI::App& program, ExitStatus& status);

} // namespace KestoHost
