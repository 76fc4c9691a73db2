#pragma once

#include "platform/Export.h"
#include "platform/KestoRenderLib.h"
#include "platform/WinTypes.h"

#include <string>

namespace Gdiplus {
class Bitmap;
}

namespace KestoThumbnailer {

/// Where the tiles of a sprite sheet are collected. Any thread.
class KESTO_EXPORT ISpriteComposer {
public:
    virtual ~ISpriteComposer() = default;

    /// Draws `bitmap`, scaled, into the next tile: by order of arrival, not of time. A failed draw counts as
    /// a tile and is not reported. `bitmap` stays the caller's.
    virtual void AddBitmap(Gdiplus::Bitmap& bitmap) = 0;

    /// Delivers and saves the sheet as it is, then moves its file to `targetPath` (UTF-8), in place of what
    /// is there. A file that can't be moved is not reported.
    virtual void MoveThumbnailFile(const std::string& targetPath) = 0;

    /// Of one tile, in pixels.
    virtual KestoRenderLib::Size GetImageSize() const = 0;

    /// Where on the sheet tile `index` lies, counted from 0.
    virtual CRect RectForImage(int index) const = 0;
};

} // namespace KestoThumbnailer
