#include "KestoMediaLib/CompoundMedia.h"

#include "KestoMediaLib/MediaHold.h"
#include "KestoMediaLib/ProjectModel.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace KestoMediaLib {

namespace {

bool isSeen(const boost::shared_ptr<Media>& media) {
    if (const auto* stitched = dynamic_cast<const StitchedMedia*>(media.get()))
        return stitched->hasVideo();
    return dynamic_cast<const VisualMedia*>(media.get()) != nullptr;
}

boost::shared_ptr<Media> heldCopy(const Media& media) {
    const auto copy = cloneOf(media);
    MediaHold::take(MediaHold::requireFree(copy, "clone"));
    return copy;
}

std::vector<boost::shared_ptr<const Media>> mediaOnTracks(const GroupMedia& group) {
    std::vector<boost::shared_ptr<const Media>> all;
    for (const auto& track : group.tracks()) {
        const auto media = track->medias();
        all.insert(all.end(), media.begin(), media.end());
    }
    return all;
}

} // namespace

StitchedClip::StitchedClip(const StitchedClip& other)
    : VisualMediaOf(other) {
    for (const auto& part : other.parts)
        parts.push_back(heldCopy(*part));
}

void StitchedClip::append(const boost::shared_ptr<Media>& part) {
    EditableMedia& added = MediaHold::requireFree(part, "StitchedClip");
    if (holds(*part, *this))
        throw std::invalid_argument("StitchedClip: stitched media cannot hold itself");
    MediaSpan span = added.span();
    span.start = lengthOf(*this);
    added.setSpan(span);
    parts.push_back(part);
    MediaHold::take(added);
}

bool StitchedClip::hasVideo() const {
    return std::any_of(parts.begin(), parts.end(), isSeen);
}

std::vector<boost::shared_ptr<const Media>> StitchedClip::medias() const {
    return {parts.begin(), parts.end()};
}

void StitchedClip::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitStitched(*this);
}

boost::shared_ptr<Media> StitchedClip::clone() const {
    return boost::make_shared<StitchedClip>(*this);
}

UnifiedClip::UnifiedClip(boost::shared_ptr<Media> sound, boost::shared_ptr<VisualMedia> picture)
    : audio(std::move(sound))
    , visual(std::move(picture)) {
    EditableMedia& heard = MediaHold::requireFree(audio, "UnifiedClip");
    EditableMedia& seen = MediaHold::requireFree(visual, "UnifiedClip");
    if (audio == visual)
        throw std::invalid_argument("UnifiedClip: the two parts are one media");
    if (const auto* shape = dynamic_cast<const EditableVisual*>(visual.get()))
        setExtent(shape->extent());
    MediaHold::take(heard);
    MediaHold::take(seen);
}

UnifiedClip::UnifiedClip(const UnifiedClip& other)
    : VisualMediaOf(other)
    , audio(heldCopy(*other.audio))
    , visual(boost::dynamic_pointer_cast<VisualMedia>(heldCopy(*other.visual))) {}

void UnifiedClip::accessInternals(const Accessor& access) const {
    access(audio, visual);
}

void UnifiedClip::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitUnified(*this);
}

boost::shared_ptr<Media> UnifiedClip::clone() const {
    return boost::make_shared<UnifiedClip>(*this);
}

GroupMedia::GroupMedia(const GroupMedia& other)
    : VisualMediaOf(other) {
    for (const auto& track : other.content)
        addTrack(track->clone());
}

void GroupMedia::addTrack(const boost::shared_ptr<TrackModel>& track) {
    if (!track)
        throw std::invalid_argument("GroupMedia: the track is empty");
    if (track->held)
        throw std::invalid_argument("GroupMedia: the track is held already");
    for (const auto& media : track->medias())
        if (holds(*media, *this))
            throw std::invalid_argument("GroupMedia: a group cannot hold itself");
    content.push_back(track);
    track->held = true;
}

void GroupMedia::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitGroup(*this);
}

boost::shared_ptr<Media> GroupMedia::clone() const {
    return boost::make_shared<GroupMedia>(*this);
}

__int64 lengthOf(const StitchedMedia& clip) {
    const auto parts = clip.medias();
    return parts.empty() ? 0 : endOf(spanOf(*parts.back()));
}

std::vector<boost::shared_ptr<const Media>> innerMedia(const Media& media) {
    if (const auto* stitched = dynamic_cast<const StitchedMedia*>(&media))
        return stitched->medias();
    if (const auto* group = dynamic_cast<const GroupMedia*>(&media))
        return mediaOnTracks(*group);
    std::vector<boost::shared_ptr<const Media>> parts;
    if (const auto* unified = dynamic_cast<const UnifiedMedia*>(&media))
        unified->accessInternals([&parts](const auto& heard, const auto& seen) { parts = {heard, seen}; });
    return parts;
}

bool holds(const Media& outer, const Media& inner) {
    if (&outer == &inner)
        return true;
    const auto parts = innerMedia(outer);
    return std::any_of(parts.begin(), parts.end(), [&](const auto& part) { return holds(*part, inner); });
}

} // namespace KestoMediaLib
