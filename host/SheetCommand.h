#pragma once

#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace KestoHost {

/// Adds `sheet`: the frames of a video or project on one picture, with a WebVTT file and a page to go with
/// it. The run leaves its outcome in `status`, which must live as long as `program`.
void addSheetCommand(CLI::App& program, ExitStatus& status);

} // namespace KestoHost
