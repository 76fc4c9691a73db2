#include "KestoMediaLib/EditableMedia.h"

#include "KestoMediaLib/MediaHold.h"

#include <fmt/format.h>

#include <stdexcept>

namespace KestoMediaLib {

namespace {

bool isTooLong(__int64 time) {
    return time > longestModelTime || time < -longestModelTime;
}

} // namespace

void EditableMedia::setSpan(const MediaSpan& span) {
    if (span.duration < 0)
        throw std::invalid_argument("EditableMedia: the duration is below 0");
    if (span.playRate <= SafeRational(0))
        throw std::invalid_argument("EditableMedia: the play rate is not above 0");
    if (isTooLong(span.start) || isTooLong(span.duration) || isTooLong(span.mediaStart))
        throw std::invalid_argument("EditableMedia: a time lies beyond what a timeline can have");
    playing = span;
}

boost::shared_ptr<Media> cloneOf(const Media& media) {
    const auto* own = dynamic_cast<const EditableMedia*>(&media);
    if (!own)
        throw std::invalid_argument("A media of another model cannot be copied");
    return own->clone();
}

EditableMedia& MediaHold::requireFree(const boost::shared_ptr<Media>& media, const char* holder) {
    if (!media)
        throw std::invalid_argument(fmt::format("{}: the media is empty", holder));
    auto* own = dynamic_cast<EditableMedia*>(media.get());
    if (!own)
        throw std::invalid_argument(fmt::format("{}: the media is of another model", holder));
    if (own->held)
        throw std::invalid_argument(fmt::format("{}: the media is held already; add a copy of it", holder));
    return *own;
}

void MediaHold::takeOnto(EditableMedia& media, const boost::weak_ptr<const Track>& track) {
    take(media);
    media.owner = track;
}

} // namespace KestoMediaLib
