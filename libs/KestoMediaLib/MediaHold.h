#pragma once

#include "KestoMediaLib/EditableMedia.h"

namespace KestoMediaLib {

/// Each media is held by one thing at most, so that what holds what is a tree.
class MediaHold {
public:
    MediaHold() = delete;

    /// Throws std::invalid_argument, with `holder` in its text, for an empty pointer, a media of another
    /// model, and one that is held.
    static EditableMedia& requireFree(const boost::shared_ptr<Media>& media, const char* holder);

    static void take(EditableMedia& media) { media.held = true; }
    static void takeOnto(EditableMedia& media, const boost::weak_ptr<const Track>& track);
};

} // namespace KestoMediaLib
