#pragma once

#include "platform/Export.h"
#include "platform/KestoRenderProject.h"
#include "platform/WinTypes.h"

#include <boost/shared_ptr.hpp>

namespace KestoRenderLib {

/// Draws one callout. One thread at a time.
class KESTO_EXPORT CalloutDrawer {
public:
    /// `factory` may be empty.
    CalloutDrawer(boost::shared_ptr<const KestoMediaLib::Callout> callout,
                  boost::shared_ptr<RenderObjectFactory> factory, bool editing);

    /// Makes `size`, the natural size in pixels, one that the callout can be drawn at; `adjusted` gets the
    /// same and may be the same object.
    void AdjustDimensions(Size& size, Size& adjusted);

    /// The moment to draw, in model time from the callout's start.
    void SetTime(__int64 modelTime);

    /// The callout on transparent ground; empty when there is nothing to draw.
    boost::shared_ptr<MetaBitmap> GenerateOverlay(const Size& size, const SizeF& scale, bool transparent,
                                                  bool antialiased);

private:
    boost::shared_ptr<const KestoMediaLib::Callout> callout;
    __int64 time = 0;
};

} // namespace KestoRenderLib
