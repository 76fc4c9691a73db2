#pragma once

#include "Report.h"
#include "callout/CalloutRequest.h"

#include <optional>
#include <string>

namespace KestoHost {

/// What one callout came to.
struct CalloutReport {
    CalloutRequest request;
    int width = 0; ///< of the written picture, in pixels
    int height = 0;
    double milliseconds = 0; ///< from the callout's making to the end of writing
    std::optional<Failure> failure;
};

/// A project whose one media is the callout, as a project file has it.
std::string projectTextOf(const CalloutRequest& request);

/// Draws the callout and writes the picture. Throws CLI::ValidationError, before anything is drawn, for
/// values that a callout can't have.
CalloutReport makeCallout(const CalloutRequest& request);

/// The one object of `--json`. The keys "reason" and "message" are there after a failure alone; width and
/// height are then null.
std::string jsonText(const CalloutReport& report);

} // namespace KestoHost
