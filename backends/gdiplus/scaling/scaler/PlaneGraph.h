#pragma once

#include "gdiplus/scaling/Scaler.h"

#include <memory>

struct zimg_filter_graph;

namespace GdiplusBackend::Scaling {

struct GraphDeleter {
    void operator()(zimg_filter_graph* graph) const;
};
using GraphPtr = std::unique_ptr<zimg_filter_graph, GraphDeleter>;

/// All that a graph depends on. `active` is the region within a window of `width` by `height` pixels.
struct GraphKey {
    int width = 0;
    int height = 0;
    Region active;
    int targetWidth = 0;
    int targetHeight = 0;
    Kernel kernel = Kernel::Linear;
    Opacity opacity = Opacity::Opaque;
};

/// The graph of this thread for `key`. Building one takes longer than scaling a thumbnail with it, so the
/// last one is kept: the frames of a video and the photos of one camera share it. It stays the thread's,
/// until the thread's next call.
Result<const zimg_filter_graph*> graphFor(const GraphKey& key);

/// The last error of the library on this thread; `doing` says during what.
LoadError zimgError(const char* doing);

} // namespace GdiplusBackend::Scaling
