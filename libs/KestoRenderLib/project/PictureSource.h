#pragma once

#include "platform/KestoRenderLib.h"

#include <boost/shared_ptr.hpp>

namespace KestoRenderLib {

/// A picture that is made at the size in which it is needed. One thread at a time.
class IPictureSource {
public:
    virtual ~IPictureSource() = default;

    /// Upright, with square pixels. 0 by 0 when there is none.
    virtual Size size() const = 0;

    /// All of the picture at `wanted` pixels, each at least 1 and at most those of `size()`. For reading
    /// alone. Empty when it can't be had.
    virtual boost::shared_ptr<MetaBitmap> picture(const Size& wanted) = 0;
};

} // namespace KestoRenderLib
