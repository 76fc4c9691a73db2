#pragma once

#include "KestoMediaLib/MediaSpan.h"
#include "KestoMediaLib/Placement.h"
#include "platform/KestoMedia.h"

#include <utility>

namespace KestoMediaLib {

/// What each media of this model has, whatever its class. Edited by one thread, while nobody reads.
class KESTO_EXPORT EditableMedia {
public:
    virtual ~EditableMedia() = default;

    const MediaSpan& span() const { return playing; }
    /// Throws std::invalid_argument for a negative duration, a play rate that is not above 0, and for times
    /// beyond `longestModelTime`.
    void setSpan(const MediaSpan& span);

    /// A copy, with copies of its parts, that nothing holds.
    virtual boost::shared_ptr<Media> clone() const = 0;

protected:
    EditableMedia() = default;
    EditableMedia(const EditableMedia& other)
        : playing(other.playing) {}
    EditableMedia& operator=(const EditableMedia&) = delete;

    const boost::weak_ptr<const Track>& track() const { return owner; }

private:
    friend class MediaHold;

    MediaSpan playing;
    boost::weak_ptr<const Track> owner;
    bool held = false;
};

/// What each media of this model has that can be seen.
class KESTO_EXPORT EditableVisual {
public:
    virtual ~EditableVisual() = default;

    const Placement& placement() const { return where; }
    void setPlacement(Placement placement) { where = std::move(placement); }

    /// In pixels, before scaling.
    const KeyFramedVector& extent() const { return natural; }
    void setExtent(KeyFramedVector extent) { natural = std::move(extent); }

protected:
    EditableVisual() = default;
    EditableVisual(const EditableVisual&) = default;
    EditableVisual& operator=(const EditableVisual&) = delete;

private:
    Placement where;
    KeyFramedVector natural;
};

/// `Interface` as a media of this model.
template <class Interface>
class KESTO_EXPORT MediaOf : public Interface, public EditableMedia {
public:
    boost::weak_ptr<const Track> parentTrack() const override { return track(); }
};

template <class Interface>
class KESTO_EXPORT VisualMediaOf : public MediaOf<Interface>, public EditableVisual {
public:
    float width(const SafeRational& time) const override {
        return static_cast<float>(extent().at(0).valueAt(time));
    }
    float height(const SafeRational& time) const override {
        return static_cast<float>(extent().at(1).valueAt(time));
    }
};

/// A copy of `media`, on no track. Throws std::invalid_argument for a media of another model.
KESTO_EXPORT boost::shared_ptr<Media> cloneOf(const Media& media);

} // namespace KestoMediaLib
