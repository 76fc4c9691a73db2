#pragma once

#include "platform/KestoMediaCallout.h"
#include "platform/KestoRenderLib.h"

namespace KestoThumbnailer {

/// The size at the callout's start, in pixels and scaled; each length is cut toward zero.
KestoRenderLib::Size NaturalSizeOf(const KestoMediaLib::Callout& callout);

/// The same, unless a length is below 201: then the smaller one is brought up to 200 and the shape kept.
KestoRenderLib::Size EnlargedToDrawWell(const KestoRenderLib::Size& size);

} // namespace KestoThumbnailer
