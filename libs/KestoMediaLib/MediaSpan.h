#pragma once

#include "platform/KestoMedia.h"
#include "platform/KestoMediaTime.h"

namespace KestoMediaLib {

/// No time of a media lies farther from 0: about a hundred years.
constexpr __int64 longestModelTime = __int64{1} << 61;

/// When a media plays, in model time on the timeline that holds it, and what of its content.
///
///     timeline:      start [-------- duration --------)
///     content:  mediaStart [-- duration * playRate ---)
struct MediaSpan {
    __int64 start = 0;
    __int64 duration = 0;
    __int64 mediaStart = 0;
    SafeRational playRate = 1; ///< above 0; 2 is twice as fast
};

/// The first moment in which it no longer plays.
KESTO_EXPORT __int64 endOf(const MediaSpan& span);

/// Half-open: true at the start, false at the end.
KESTO_EXPORT bool playsAt(const MediaSpan& span, __int64 time);

/// The moment of the content that is due at `time` of the timeline: for a file the time in the file, for a
/// group or stitched media the time on its own timeline.
KESTO_EXPORT __int64 contentTimeAt(const MediaSpan& span, __int64 time);

/// The time that the media's animations are asked for at `time` of the timeline: seconds from its start,
/// whatever its play rate.
KESTO_EXPORT RationalTime animationTimeAt(const MediaSpan& span, __int64 time);

/// That of a media of this model; one of another model never plays.
KESTO_EXPORT MediaSpan spanOf(const Media& media);

} // namespace KestoMediaLib
