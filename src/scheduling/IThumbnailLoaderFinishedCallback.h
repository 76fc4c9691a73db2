#pragma once

#include "platform/Export.h"

namespace KestoThumbnailer {

struct ThumbnailLoaderJob;

/// What the callback of a job may be besides `IThumbnailLoaderGdiplusBitmapCallback`, as a second public
/// base, to learn that a picture has been tried: a source without one calls nothing else. Never destroyed
/// through this interface.
class KESTO_EXPORT IThumbnailLoaderFinishedCallback {
public:
    /// Once for each picture or sheet that was run, whether it came or not, and after it. `job` is the
    /// request as it was run, for the length of the call. Not for jobs that were folded into this one, nor
    /// for those dropped when the loader went. Comes on the worker thread, where it may ask for the next
    /// picture, and where an exception ends the process. The callback is not used after this call.
    virtual void OnThumbnailJobFinished(const ThumbnailLoaderJob& job) = 0;

protected:
    ~IThumbnailLoaderFinishedCallback() = default;
};

} // namespace KestoThumbnailer
