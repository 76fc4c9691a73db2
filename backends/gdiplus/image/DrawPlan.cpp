#include "gdiplus/image/DrawPlan.h"

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/pixels/RotateFlip.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace GdiplusBackend {

namespace {

/// A decoder's reduced picture is a good average already; half as much again is enough for the kernel.
bool oversamples(int length, int target) {
    return std::int64_t{length} * 2 >= std::int64_t{target} * 3;
}

int boxFactor(int length, int target) {
    constexpr std::int64_t oversampling = 2;
    return static_cast<int>(std::max<std::int64_t>(1, length / (oversampling * target)));
}

} // namespace

DrawPlan planDrawing(const DrawPlanInput& input) {
    DrawPlan plan;
    plan.turn = input.turn;
    plan.scaledWidth = input.targetWidth;
    plan.scaledHeight = input.targetHeight;
    if (swapsSides(input.turn))
        std::swap(plan.scaledWidth, plan.scaledHeight);
    plan.shrunkWidth = input.width;
    plan.shrunkHeight = input.height;
    if (input.kernel == Kernel::Nearest)
        return plan;
    for (const int reduction : input.reductions)
        if (oversamples(input.width / reduction, plan.scaledWidth) &&
            oversamples(input.height / reduction, plan.scaledHeight))
            plan.reduction = reduction;
    const int decodedWidth = reducedLength(input.width, plan.reduction);
    const int decodedHeight = reducedLength(input.height, plan.reduction);
    plan.boxX = boxFactor(decodedWidth, plan.scaledWidth);
    plan.boxY = boxFactor(decodedHeight, plan.scaledHeight);
    plan.shrunkWidth = reducedLength(decodedWidth, plan.boxX);
    plan.shrunkHeight = reducedLength(decodedHeight, plan.boxY);
    return plan;
}

std::vector<std::string> describe(const DrawPlan& plan) {
    std::vector<std::string> steps;
    steps.push_back(plan.reduction == 1 ? std::string("decode") : fmt::format("decode 1/{}", plan.reduction));
    if (plan.boxX > 1 || plan.boxY > 1)
        steps.push_back(
            fmt::format("average {}x{} to {}x{}", plan.boxX, plan.boxY, plan.shrunkWidth, plan.shrunkHeight));
    if (plan.shrunkWidth != plan.scaledWidth || plan.shrunkHeight != plan.scaledHeight)
        steps.push_back(fmt::format("scale to {}x{}", plan.scaledWidth, plan.scaledHeight));
    if ((plan.turn & 3) != 0)
        steps.push_back(fmt::format("turn {}", (plan.turn & 3) * 90));
    if ((plan.turn & 4) != 0)
        steps.emplace_back("mirror");
    return steps;
}

} // namespace GdiplusBackend
