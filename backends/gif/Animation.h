#pragma once

#include "gif/Bytes.h"
#include "gif/CanvasPlan.h"
#include "gif/FrameList.h"
#include "gif/FrameUnpacker.h"

#include <chrono>
#include <map>
#include <memory>

namespace GifBackend {

struct Limits {
    std::uint64_t pixels = 400'000'000;                        ///< of a screen, and of a frame
    std::chrono::milliseconds time = std::chrono::seconds(30); ///< for a picture
};

/// The frames of a file as they are seen: composed on the logical screen, transparent where none has drawn. A
/// picture that follows the last one costs one frame; to go back costs the frames from a kept canvas on. One
/// thread at a time.
class Animation {
public:
    /// Null for what is no GIF, has no frame, or has a screen beyond the limit.
    static std::unique_ptr<Animation> open(std::unique_ptr<IBytes> source, const Limits& limits);

    FrameList& frames() { return list; }

    /// The frame at a time in seconds, wherever playing has come to by then: the first one before the start,
    /// the last one after the end of the last pass.
    std::size_t indexAt(double seconds);

    /// Null behind the last frame, and out of time. A frame that lacks pixels is shown with those there are.
    std::shared_ptr<const Picture> pictureAt(std::size_t index);

private:
    using Clock = std::chrono::steady_clock;
    using PicturePtr = std::shared_ptr<const Picture>;

    enum class Outcome { Done, FrameLacksPixels, OutOfTime };

    /// The canvas before the frame of that index; null for a blank one.
    struct KeptCanvas {
        std::size_t index = 0;
        PicturePtr canvas;
    };

    Animation(std::unique_ptr<IBytes> bytes, const Limits& allowed);

    Outcome tryCompose(std::size_t index, PicturePtr& shown);
    Outcome prepareCanvas(std::size_t index, const std::optional<Box>& covered, Picture& canvas);
    Outcome approach(std::size_t index, const std::optional<Box>& covered);
    Outcome run(const CanvasPlan& plan, Picture& canvas);
    Outcome draw(Frame& frame, Picture& picture);

    KeptCanvas nearestKept(std::size_t index) const;
    Picture startOf(const CanvasPlan& plan, const PicturePtr& canvas) const;
    void keep(std::size_t index, const PicturePtr& canvas);
    void thinOut();

    std::unique_ptr<IBytes> source;
    Limits limits;
    FrameList list;
    FrameUnpacker unpacker;
    Clock::time_point deadline;

    KeptCanvas newest;
    /// Others by the indices of their frames, and how far these are apart at least.
    std::map<std::size_t, PicturePtr> milestones;
    std::size_t spacing = 32;

    std::size_t shownIndex = 0;
    PicturePtr shownLast;
};

} // namespace GifBackend
