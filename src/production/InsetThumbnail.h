#pragma once

#include "platform/Gdiplus.h"

#include <boost/shared_ptr.hpp>

namespace KestoThumbnailer {

/// `base` with `inset` over its bottom-right quarter, fitted into the box; the only one of them as it is.
/// Null for two empty pointers. In `32bppPARGB`, and the caller owns it.
Gdiplus::Bitmap* ComposeInsetThumbnail(boost::shared_ptr<Gdiplus::Bitmap> base,
                                       boost::shared_ptr<Gdiplus::Bitmap> inset, int width, int height);

} // namespace KestoThumbnailer
