#pragma once

#include "platform/KestoMediaModel.h"

#include <boost/shared_ptr.hpp>

namespace KestoRenderLib {

class MediaScene;

/// Draws a callout, which is not empty, at the surface's own scale. A blur box blurs what lies below it and a
/// spotlight darkens what lies around it; both reach no further than the surface that they are drawn on.
void paintCallout(const MediaScene& scene, const boost::shared_ptr<const KestoMediaLib::Callout>& callout);

} // namespace KestoRenderLib
