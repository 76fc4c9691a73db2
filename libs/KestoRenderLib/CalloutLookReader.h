#pragma once

#include "KestoRenderLib/CalloutLook.h"

#include "platform/KestoMediaModel.h"
#include "platform/WinTypes.h"

#include <optional>

namespace KestoRenderLib {

/// Lengths in a callout's own pixels.
struct CalloutBox {
    double width = 0;
    double height = 0;
};

/// What `callout`, which may be empty, comes to in a box of that size, `time` of model time after its start.
/// docs/callouts.md has the parameters and what they are when they are left out. Nothing for a callout that
/// has nothing to draw: without a drawing, of no kind or shape that there is, with an SVG file that can't be
/// read, or with colours and lengths that leave nothing.
std::optional<CalloutLook> readCalloutLook(const boost::shared_ptr<const KestoMediaLib::Callout>& callout,
                                           const CalloutBox& box, __int64 time);

} // namespace KestoRenderLib
