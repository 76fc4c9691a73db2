#include "gif/CanvasPlan.h"

#include <algorithm>

namespace GifBackend {

namespace {

/// Boxes of which nothing shows that was there before.
class Covers {
public:
    bool hide(const Box& box) const {
        return box.isEmpty() ||
               std::any_of(boxes.begin(), boxes.end(), [&](const Box& b) { return b.contains(box); });
    }
    void add(const Box& box) {
        constexpr std::size_t most = 8; // more are seldom of use, and each costs time with every frame
        if (boxes.size() < most)
            boxes.push_back(box);
    }

private:
    std::vector<Box> boxes;
};

} // namespace

bool isOpaque(const FrameList& frames, std::size_t index) {
    const Frame& frame = frames[index];
    return !frame.transparentIndex && !frame.lacksPixels &&
           (frame.localColours > 0 || !frames.screen().palette.empty());
}

CanvasPlan planCanvas(const FrameList& frames, std::size_t kept, std::size_t target,
                      const std::optional<Box>& covered) {
    const Screen& screen = frames.screen();
    const Box everything = {0, 0, screen.width, screen.height};
    Covers covers;
    if (covered)
        covers.add(*covered);
    CanvasPlan plan;
    std::size_t index = target;
    while (index > kept && !covers.hide(everything)) {
        const Frame& frame = frames[--index];
        const Box box = visibleBox(frame, screen.width, screen.height);
        if (frame.disposal == Disposal::Restore || covers.hide(box))
            continue;
        const bool clears = frame.disposal == Disposal::Clear;
        if (!clears || box != everything)
            plan.steps.push_back({index, clears ? CanvasStep::Kind::Clear : CanvasStep::Kind::Draw});
        if (clears || isOpaque(frames, index))
            covers.add(box);
    }
    plan.startsBlank = kept == 0 || covers.hide(everything);
    std::reverse(plan.steps.begin(), plan.steps.end());
    return plan;
}

} // namespace GifBackend
