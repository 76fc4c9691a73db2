#pragma once

namespace KestoThumbnailer {

/// Shrinks a size in place so that it fits into the bounds, and keeps its shape; a size that fits stays. A
/// bound of 0 is none in that direction; both 0, or a negative one, change nothing. A size that is changed
/// has lengths of at least 1. With one bound the other length is truncated, with two it is rounded. Sizes
/// whose products with the bounds leave 32 bits may be fitted to the wrong bound.
void FitWithinBounds(int& width, int& height, int maxWidth, int maxHeight);

} // namespace KestoThumbnailer
