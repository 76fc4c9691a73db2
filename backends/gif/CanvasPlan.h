#pragma once

#include "gif/Canvas.h"
#include "gif/FrameList.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace GifBackend {

/// A frame that is drawn, or whose area is cleared.
struct CanvasStep {
    enum class Kind : std::uint8_t { Draw, Clear };

    std::size_t frame = 0;
    Kind kind = Kind::Draw;

    friend bool operator==(const CanvasStep&, const CanvasStep&) = default;
};

/// How the canvas that a frame is drawn on comes about.
struct CanvasPlan {
    bool startsBlank = false; ///< else with the kept canvas
    std::vector<CanvasStep> steps = {};
};

/// From the canvas before frame `kept`, or from a blank one, to the canvas before frame `target`, which is
/// not before `kept`. Frames are left out that leave nothing on it: those that are taken away again, and
/// those of which nothing is seen behind later ones or behind `covered`, if that is to be drawn over anyway.
/// Requires: the list has given the frames.
CanvasPlan planCanvas(const FrameList& frames, std::size_t kept, std::size_t target,
                      const std::optional<Box>& covered);

/// Whether nothing is seen through a frame, as far as its header tells and its pixels were not found wanting.
bool isOpaque(const FrameList& frames, std::size_t index);

} // namespace GifBackend
