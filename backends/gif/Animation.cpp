#include "gif/Animation.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace GifBackend {

namespace {

/// Of milestones, all together.
constexpr std::size_t mostKeptBytes = std::size_t{32} << 20;

std::size_t pixelsOf(const Screen& screen) {
    return static_cast<std::size_t>(screen.width) * static_cast<std::size_t>(screen.height);
}

/// The last one that is not after `seconds`. What is written with two digits behind the point is meant to be
/// that hundredth, although its double may lie before it.
std::int64_t hundredthsOf(double seconds) {
    constexpr double longest = 1e13;
    constexpr double perSecond = 100;
    const double held = std::clamp(seconds, 0.0, longest);
    const std::int64_t nearest = std::llround(held * perSecond);
    return static_cast<double>(nearest) / perSecond > held ? nearest - 1 : nearest;
}

} // namespace

Animation::Animation(std::unique_ptr<IBytes> bytes, const Limits& allowed)
    : source(std::move(bytes))
    , limits(allowed)
    , list(*source) {}

std::unique_ptr<Animation> Animation::open(std::unique_ptr<IBytes> source, const Limits& limits) {
    std::unique_ptr<Animation> animation(new Animation(std::move(source), limits));
    if (!animation->list.open())
        return nullptr;
    const std::size_t pixels = pixelsOf(animation->list.screen());
    if (pixels == 0 || pixels > limits.pixels)
        return nullptr;
    return animation;
}

std::size_t Animation::indexAt(double seconds) {
    if (!(seconds > 0))
        return 0;
    if (std::isinf(seconds))
        return list.count() - 1;
    const std::int64_t time = hundredthsOf(seconds);
    if (const auto index = list.shownAt(time))
        return *index;
    const int passes = list.passes();
    if (passes != 0 && time / list.duration() >= passes)
        return list.count() - 1;
    return *list.shownAt(time % list.duration());
}

std::shared_ptr<const Picture> Animation::pictureAt(std::size_t index) {
    if (!list.at(index))
        return nullptr;
    if (shownLast && shownIndex == index)
        return shownLast;
    deadline = Clock::now() + limits.time;
    PicturePtr shown;
    Outcome outcome = tryCompose(index, shown);
    while (outcome == Outcome::FrameLacksPixels) // now known as no opaque one: each turn finds another
        outcome = tryCompose(index, shown);
    if (outcome == Outcome::OutOfTime)
        return nullptr;
    shownIndex = index;
    shownLast = shown;
    return shown;
}

Animation::Outcome Animation::tryCompose(std::size_t index, PicturePtr& shown) {
    Frame& frame = *list.at(index);
    const Box box = visibleBox(frame, list.screen().width, list.screen().height);
    // What is restored after the frame has to be right below it, too.
    const bool hidesCanvas = isOpaque(list, index) && frame.disposal != Disposal::Restore;
    Picture canvas;
    if (const Outcome made = prepareCanvas(index, hidesCanvas ? std::optional(box) : std::nullopt, canvas);
        made != Outcome::Done)
        return made;
    PicturePtr below;
    if (frame.disposal != Disposal::Keep) {
        auto cleared = std::make_shared<Picture>(canvas);
        if (frame.disposal == Disposal::Clear)
            clearBox(*cleared, box);
        below = std::move(cleared);
    }
    if (const Outcome drawn = draw(frame, canvas); drawn != Outcome::Done)
        return drawn;
    shown = std::make_shared<const Picture>(std::move(canvas));
    keep(index + 1, below ? below : shown);
    return Outcome::Done;
}

Animation::Outcome Animation::prepareCanvas(std::size_t index, const std::optional<Box>& covered,
                                            Picture& canvas) {
    if (const Outcome near = approach(index, covered); near != Outcome::Done)
        return near;
    const KeptCanvas start = nearestKept(index);
    const CanvasPlan plan = planCanvas(list, start.index, index, covered);
    canvas = startOf(plan, start.canvas);
    return run(plan, canvas);
}

/// Keeps canvases along a long way, so that the next one is not as long.
Animation::Outcome Animation::approach(std::size_t index, const std::optional<Box>& covered) {
    for (;;) {
        const KeptCanvas start = nearestKept(index);
        const CanvasPlan wholeWay = planCanvas(list, start.index, index, covered);
        if (wholeWay.steps.size() <= spacing)
            return Outcome::Done;
        const std::size_t stop = wholeWay.steps[spacing].frame;
        const CanvasPlan plan = planCanvas(list, start.index, stop, std::nullopt);
        Picture canvas = startOf(plan, start.canvas);
        if (const Outcome made = run(plan, canvas); made != Outcome::Done)
            return made;
        keep(stop, std::make_shared<const Picture>(std::move(canvas)));
    }
}

Picture Animation::startOf(const CanvasPlan& plan, const PicturePtr& canvas) const {
    if (canvas && !plan.startsBlank)
        return *canvas;
    const Screen& screen = list.screen();
    return {screen.width, screen.height, std::vector<std::uint32_t>(pixelsOf(screen))};
}

Animation::Outcome Animation::run(const CanvasPlan& plan, Picture& canvas) {
    for (const CanvasStep& step : plan.steps) {
        if (Clock::now() >= deadline)
            return Outcome::OutOfTime;
        Frame& frame = *list.at(step.frame);
        if (step.kind == CanvasStep::Kind::Clear)
            clearBox(canvas, visibleBox(frame, canvas.width, canvas.height));
        else if (const Outcome drawn = draw(frame, canvas); drawn != Outcome::Done)
            return drawn;
    }
    return Outcome::Done;
}

/// `FrameLacksPixels` for what was taken for opaque until now.
Animation::Outcome Animation::draw(Frame& frame, Picture& picture) {
    const std::size_t needed = indicesNeeded(frame, visibleBox(frame, picture.width, picture.height));
    const Palette palette = frame.localColours > 0
                                ? readPaletteAt(*source, frame.palettePlace, frame.localColours)
                                : list.screen().palette;
    const auto indices = needed <= limits.pixels && !palette.empty() ? unpacker.unpack(*source, frame, needed)
                                                                     : std::span<const std::uint8_t>();
    drawFrame(picture, frame, indices, coloursOf(palette, frame.transparentIndex));
    if (indices.size() == needed || frame.lacksPixels)
        return Outcome::Done;
    frame.lacksPixels = true;
    return frame.transparentIndex ? Outcome::Done : Outcome::FrameLacksPixels;
}

Animation::KeptCanvas Animation::nearestKept(std::size_t index) const {
    const auto behind = milestones.upper_bound(index);
    KeptCanvas nearest;
    if (behind != milestones.begin())
        nearest = {std::prev(behind)->first, std::prev(behind)->second};
    return newest.index <= index && newest.index >= nearest.index ? newest : nearest;
}

void Animation::keep(std::size_t index, const PicturePtr& canvas) {
    newest = {index, canvas};
    const auto behind = milestones.upper_bound(index);
    const bool isFirst = behind == milestones.begin();
    const std::size_t before = isFirst ? 0 : std::prev(behind)->first;
    const std::size_t after = behind == milestones.end() ? index + spacing : behind->first;
    if (index - before < spacing || after - index < spacing)
        return;
    milestones.emplace(index, canvas);
    if (milestones.size() * pixelsOf(list.screen()) * sizeof(std::uint32_t) > mostKeptBytes)
        thinOut();
}

void Animation::thinOut() {
    bool removes = true;
    std::erase_if(milestones, [&removes](const auto&) { return std::exchange(removes, !removes); });
    spacing *= 2;
}

} // namespace GifBackend
