#pragma once

#include "platform/Export.h"
#include "scheduling/IPauseThumbnailing.h"

namespace KestoThumbnailer {

struct ThumbnailLoaderJob;

/// Makes thumbnails away from the caller's thread. Any thread.
class KESTO_EXPORT IThumbnailLoader : public IPauseThumbnailing {
public:
    virtual ~IThumbnailLoader() = default;

    /// Takes a copy of `job` and returns at once; the pictures come to its callback and its file. False when
    /// it names no source, and nothing happens then. True is no promise of a picture: a source that gives
    /// none is passed over in silence, and the callback is not called. Whatever the result, a picture is
    /// always made anew: an accepted job removes the file that has its output path.
    virtual bool GetThumbnailAsync(const ThumbnailLoaderJob& job) = 0;

    /// Where thumbnail `index` lies on a sheet of `count` thumbnails, in pixels; see
    /// `SpriteComposer::RectForImage`.
    virtual void GetThumbnailRectInSpriteSheet(int thumbWidth, int thumbHeight, int index, int count,
                                               int& left, int& top, int& right, int& bottom) = 0;
};

} // namespace KestoThumbnailer
