#pragma once

#include "pack/PackReport.h"
#include "pack/PackRequest.h"

namespace KestoHost {

/// Writes the recording, or leaves what was there before.
PackReport packRecording(const PackRequest& request);

} // namespace KestoHost
