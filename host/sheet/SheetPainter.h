#pragma once

#include "sheet/SheetLayout.h"
#include "video/ModelTime.h"

#include <KestoThumbnailer/platform/KestoRenderLib.h>

#include <functional>
#include <memory>
#include <vector>

namespace KestoHost {

/// A sheet and what is missing on it.
struct PaintedSheet {
    std::unique_ptr<Gdiplus::Bitmap> bitmap; ///< null without memory for it
    std::vector<int> holes;
};

/// What is shown at a time. Empty, or a `std::runtime_error`, where nothing can be shown.
using FrameAt = std::function<boost::shared_ptr<KestoRenderLib::MetaBitmap>(ModelTime)>;

/// Asks for the frame of each of `times` in turn, and keeps one frame at a time. What can't be shown leaves a
/// transparent hole. The process must have started GDI+.
PaintedSheet paintSheet(const FrameAt& frameAt, const std::vector<ModelTime>& times,
                        const SheetLayout& layout);

} // namespace KestoHost
