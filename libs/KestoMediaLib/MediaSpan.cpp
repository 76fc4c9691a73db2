#include "KestoMediaLib/MediaSpan.h"

#include "KestoMediaLib/EditableMedia.h"
#include "KestoMediaLib/Rounding.h"

namespace KestoMediaLib {

__int64 endOf(const MediaSpan& span) {
    return span.start + span.duration;
}

bool playsAt(const MediaSpan& span, __int64 time) {
    return time >= span.start && time < endOf(span);
}

__int64 contentTimeAt(const MediaSpan& span, __int64 time) {
    const Wide sinceStart = Wide{time} - span.start;
    const Wide rate = span.playRate.denominator();
    const __int64 played = nearestInteger(sinceStart * span.playRate.numerator(), rate);
    return nearestInteger(Wide{played} + span.mediaStart, 1);
}

RationalTime animationTimeAt(const MediaSpan& span, __int64 time) {
    return RationalUtil::toSeconds(nearestInteger(Wide{time} - span.start, 1));
}

MediaSpan spanOf(const Media& media) {
    const auto* own = dynamic_cast<const EditableMedia*>(&media);
    return own ? own->span() : MediaSpan();
}

} // namespace KestoMediaLib
