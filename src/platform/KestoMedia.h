#pragma once

#include "platform/KestoMediaLib.h"
#include "platform/KestoMediaTime.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <functional>
#include <string>
#include <vector>

namespace KestoMediaLib {

/// One thing on a track: a video, an image, a callout and so on. Read by any thread while nobody edits.
class KESTO_EXPORT Media : public KestoObject, public boost::enable_shared_from_this<Media> {
public:
    /// Calls the visit operation of the media's own class.
    virtual void accept(ConstMediaDispatcher& dispatcher) const = 0;

    /// The track that the media itself lies on; empty for one on no track, and for a part of another media.
    virtual boost::weak_ptr<const Track> parentTrack() const = 0;
};

/// Media that has something to show.
class KESTO_EXPORT VisualMedia : public Media {
public:
    /// In pixels, before scaling; `time` counts from the start of the media. 0 for a file that has not been
    /// looked at yet: it is then shown at its own size.
    virtual float width(const SafeRational& time) const = 0;
    virtual float height(const SafeRational& time) const = 0;
};

/// What in a file a media shows or plays.
class KESTO_EXPORT IMediaSource {
public:
    virtual ~IMediaSource() = default;

    /// A path in UTF-8, complete with the project's folder.
    virtual std::string fileName() const = 0;
    /// Of the file's streams, counted from 0; -1 leaves the choice to the decoder.
    virtual int streamIndex() const = 0;
};

/// The first kind of file: moving pictures with times of their own. A video or a screen recording.
class KESTO_EXPORT VideoFileMedia : public VisualMedia, public IMediaSource {};

/// The second kind of file: a picture, which may move in a circle. An image or an animated GIF.
class KESTO_EXPORT ImageFileMedia : public VisualMedia, public IMediaSource {};

/// Media played one after the other as if they were one.
class KESTO_EXPORT StitchedMedia : public VisualMedia {
public:
    /// Whether any part has something to show.
    virtual bool hasVideo() const = 0;
    /// The parts in the order in which they play.
    virtual std::vector<boost::shared_ptr<const Media>> medias() const = 0;
};

/// Sound and picture that belong together. Shown, it is its visual part.
class KESTO_EXPORT UnifiedMedia : public VisualMedia {
public:
    using Accessor = std::function<void(const boost::shared_ptr<const Media>& audio,
                                        const boost::shared_ptr<const VisualMedia>& visual)>;

    /// Calls `access` once, before it returns. Neither part is empty.
    virtual void accessInternals(const Accessor& access) const = 0;
};

} // namespace KestoMediaLib
