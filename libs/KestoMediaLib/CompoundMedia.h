#pragma once

#include "KestoMediaLib/EditableMedia.h"

#include <vector>

namespace KestoMediaLib {

class TrackModel;

/// Parts that play one after the other on a timeline of their own, from 0 on. Its width and height are the
/// frame in which the parts are placed.
class KESTO_EXPORT StitchedClip final : public VisualMediaOf<StitchedMedia> {
public:
    StitchedClip() = default;
    StitchedClip(const StitchedClip& other);

    /// Adds a part after the last one: its start becomes the end of the part before, and its duration and
    /// media start are the trim. Throws std::invalid_argument for an empty pointer, a media of another model,
    /// one that is held already, and one that is this clip or holds it.
    void append(const boost::shared_ptr<Media>& part);

    bool hasVideo() const override;
    std::vector<boost::shared_ptr<const Media>> medias() const override;

    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;

private:
    std::vector<boost::shared_ptr<Media>> parts;
};

/// The parts play at the clip's own span and lie where it lies: their own spans and placements do not count.
class KESTO_EXPORT UnifiedClip final : public VisualMediaOf<UnifiedMedia> {
public:
    /// Takes the extent of the visual part. Throws std::invalid_argument for an empty pointer, for a media of
    /// another model, and for one that is held already.
    UnifiedClip(boost::shared_ptr<Media> audio, boost::shared_ptr<VisualMedia> visual);
    UnifiedClip(const UnifiedClip& other);

    void accessInternals(const Accessor& access) const override;

    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;

private:
    boost::shared_ptr<Media> audio;
    boost::shared_ptr<VisualMedia> visual;
};

/// Media on tracks of their own, on a timeline of their own from 0 on. Its width and height are the frame in
/// which they are placed; it does not cut them off.
class KESTO_EXPORT GroupMedia final : public VisualMediaOf<VisualMedia> {
public:
    GroupMedia() = default;
    GroupMedia(const GroupMedia& other);

    /// On top of the others. Throws std::invalid_argument for an empty pointer, a track that is in a mixer or
    /// a group, and one that holds this group.
    void addTrack(const boost::shared_ptr<TrackModel>& track);

    /// From the bottom to the top.
    const std::vector<boost::shared_ptr<TrackModel>>& tracks() const { return content; }

    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;

private:
    std::vector<boost::shared_ptr<TrackModel>> content;
};

/// When the last part ends.
KESTO_EXPORT __int64 lengthOf(const StitchedMedia& clip);

/// The media directly inside `media`: parts, the audio and the visual one, or what lies on a group's tracks.
KESTO_EXPORT std::vector<boost::shared_ptr<const Media>> innerMedia(const Media& media);

/// Whether `inner` is `outer` or lies inside it, however deep.
KESTO_EXPORT bool holds(const Media& outer, const Media& inner);

} // namespace KestoMediaLib
