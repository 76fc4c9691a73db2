#pragma once

#include "gif/FrameWalker.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace GifBackend {

/// The frames of a file and their times, read as far as somebody asks. A file that is damaged or cut off ends
/// with its last frame whose header is whole. Times are hundredths of a second.
class FrameList {
public:
    /// What follows that many frames is never read.
    static constexpr std::size_t mostFrames = 100'000;

    /// `source` must outlive the list.
    explicit FrameList(IBytes& source);

    /// Reads up to the first frame's header; to be called first. False without it.
    bool open();

    /// A file that tells no size has one as far as its first frame reaches.
    const Screen& screen() const { return logicalScreen; }

    /// Null behind the end. It stays where it is.
    Frame* at(std::size_t index);
    const Frame& operator[](std::size_t known) const { return frames[known].frame; }
    /// Of the whole file.
    std::size_t count();

    /// When the frame is shown first, and when no longer. Requires: `at` has given it.
    std::int64_t startOf(std::size_t known) const { return known == 0 ? 0 : frames[known - 1].end; }
    std::int64_t endOf(std::size_t known) const { return frames[known].end; }

    /// The frame shown at `time`, which is at least 0, when the file is played once; empty after its end.
    std::optional<std::size_t> shownAt(std::int64_t time);

    /// Of one pass.
    std::int64_t duration();
    /// How often it is played in all: 0 for ever.
    int passes();

private:
    struct TimedFrame {
        Frame frame;
        std::int64_t end;
    };

    bool readNext();

    FrameWalker walker;
    Screen logicalScreen;
    std::deque<TimedFrame> frames;
    bool isComplete = false;
};

} // namespace GifBackend
