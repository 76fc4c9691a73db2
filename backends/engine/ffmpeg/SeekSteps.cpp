#include "engine/ffmpeg/SeekSteps.h"

#include "engine/ffmpeg/Demuxer.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <algorithm>

namespace EngineBackend {

SeekSteps::SeekSteps(Demuxer& source, int streamIndex, std::int64_t target)
    : demuxer(&source)
    , stream(streamIndex)
    , next(target)
    , step(std::max<std::int64_t>(av_rescale_q(1, {1, 2}, source.stream(streamIndex).time_base), 1))
    , firstTicks(source.originOf(streamIndex)) {}

bool SeekSteps::goBack() {
    if (atStart)
        return false;
    if (steps++ > 0 && next < firstTicks)
        return goToStart();
    return demuxer->seekBefore(stream, std::max(next, firstTicks)) || goToStart();
}

void SeekSteps::cameTo(std::optional<std::int64_t> ticks) {
    // An index leads to the key frame before this one by the smallest step; else steps have to grow.
    const bool cameNearer = ticks && *ticks < next;
    next = (cameNearer ? *ticks : next) - (steps == 1 ? 1 : step);
    if (steps > 1)
        step = step < std::int64_t{1} << 60 ? step * 2 : step;
}

bool SeekSteps::goToStart() {
    atStart = true;
    return demuxer->rewind();
}

} // namespace EngineBackend
