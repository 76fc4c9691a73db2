#pragma once

#include "platform/Export.h"
#include "platform/KestoRenderProject.h"
#include "platform/WinTypes.h"

#include <boost/shared_ptr.hpp>

namespace KestoRenderLib {

/// Draws one callout. One thread at a time.
class KESTO_EXPORT CalloutDrawer {
public:
    /// `callout` and `factory` may be empty. `editing` changes nothing.
    CalloutDrawer(boost::shared_ptr<const KestoMediaLib::Callout> callout,
                  boost::shared_ptr<RenderObjectFactory> factory, bool editing);

    /// Makes `size`, in pixels, one that the callout can be drawn at: at least 1 in each direction, at most
    /// 16384 in a direction and 2^26 in all, made smaller in proportion. `adjusted` gets the same and may be
    /// the same object. Texts are made to fit their box, so that no shape asks for more.
    void AdjustDimensions(Size& size, Size& adjusted);

    /// The moment to draw, in model time from the callout's start.
    void SetTime(__int64 modelTime);

    /// The callout at `time`, in a box of `size`, at `scale` pixels for each unit of it. A box of another
    /// size than the callout's own enlarges the drawing evenly, letters and borders with the rest.
    /// `transparent`: around the callout nothing is drawn, and what is translucent stays so; else it lies on
    /// opaque white. `antialiased`: edges are smooth; else each pixel is inside or outside.
    /// Empty when there is nothing to draw, and for a size below 1, above 32767 pixels in a direction or
    /// beyond the pixel budget. One that draws itself and has not begun is transparent.
    boost::shared_ptr<MetaBitmap> GenerateOverlay(const Size& size, const SizeF& scale, bool transparent,
                                                  bool antialiased);

private:
    boost::shared_ptr<const KestoMediaLib::Callout> callout;
    __int64 time = 0;
};

} // namespace KestoRenderLib
