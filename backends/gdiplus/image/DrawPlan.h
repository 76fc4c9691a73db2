#pragma once

#include "gdiplus/scaling/Scaler.h"

#include <span>
#include <string>
#include <vector>

namespace GdiplusBackend {

/// How a picture that is still encoded gets into a rectangle: decoded at a reduced size, blocks averaged as
/// the rows arrive, the rest scaled by the kernel, then turned.
struct DrawPlan {
    int reduction = 1; ///< denominator that the decoder works with
    int boxX = 1;      ///< blocks of reduced pixels that are averaged
    int boxY = 1;
    int shrunkWidth = 0; ///< what decoding and averaging give
    int shrunkHeight = 0;
    int scaledWidth = 0; ///< what the kernel makes of it, before the turn
    int scaledHeight = 0;
    Gdiplus::RotateFlipType turn = Gdiplus::RotateNoneFlipNone;
};

struct DrawPlanInput {
    int width = 0; ///< as stored
    int height = 0;
    std::span<const int> reductions = {};
    Gdiplus::RotateFlipType turn = Gdiplus::RotateNoneFlipNone;
    int targetWidth = 0; ///< after the turn
    int targetHeight = 0;
    Kernel kernel = Kernel::Linear;
};

/// Leaves the kernel more than the target's size in each direction that is shrunk before it, so that the
/// kernel decides how the picture looks: one and a half times behind a decoder's reduction, twice behind
/// averaged blocks. `Nearest` takes pixels as they are, so nothing is averaged for it.
DrawPlan planDrawing(const DrawPlanInput& input);

/// The plan's steps in words, those that do nothing left out.
std::vector<std::string> describe(const DrawPlan& plan);

} // namespace GdiplusBackend
