#include "gif/FrameList.h"

#include <algorithm>

namespace GifBackend {

namespace {

/// Browsers agree that a delay of less than two hundredths of a second is none that was meant.
std::int64_t shownFor(const Frame& frame) {
    constexpr int shortestDelay = 2;
    constexpr int usualDelay = 10;
    return frame.delay < shortestDelay ? usualDelay : frame.delay;
}

} // namespace

FrameList::FrameList(IBytes& source)
    : walker(source) {}

bool FrameList::open() {
    auto screen = walker.readScreen();
    if (!screen)
        return false;
    logicalScreen = std::move(*screen);
    if (!readNext())
        return false;
    const Frame& first = frames.front().frame;
    if (logicalScreen.width == 0 || logicalScreen.height == 0) {
        logicalScreen.width = first.left + first.width;
        logicalScreen.height = first.top + first.height;
    }
    return true;
}

bool FrameList::readNext() {
    if (isComplete)
        return false;
    const auto next = frames.size() < mostFrames ? walker.next() : std::nullopt;
    if (!next || !*next) {
        isComplete = true;
        return false;
    }
    const std::int64_t start = frames.empty() ? 0 : frames.back().end;
    frames.push_back({**next, start + shownFor(**next)});
    return true;
}

Frame* FrameList::at(std::size_t index) {
    while (index >= frames.size())
        if (!readNext())
            return nullptr;
    return &frames[index].frame;
}

std::size_t FrameList::count() {
    while (readNext()) {
    }
    return frames.size();
}

std::optional<std::size_t> FrameList::shownAt(std::int64_t time) {
    while (time >= frames.back().end)
        if (!readNext())
            return std::nullopt;
    const auto shown = std::upper_bound(frames.begin(), frames.end(), time,
                                        [](std::int64_t t, const TimedFrame& f) { return t < f.end; });
    return static_cast<std::size_t>(shown - frames.begin());
}

std::int64_t FrameList::duration() {
    return endOf(count() - 1);
}

int FrameList::passes() {
    count();
    const auto repetitions = walker.repetitions();
    if (!repetitions)
        return 1;
    return *repetitions == 0 ? 0 : *repetitions + 1;
}

} // namespace GifBackend
