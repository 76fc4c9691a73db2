#pragma once

#include "platform/Export.h"
#include "platform/KestoMediaLib.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

namespace KestoMediaLib {

class ConstMediaDispatcher;

/// A value of the model that its owner may change, shared with those who read it.
template <class T>
class KESTO_EXPORT Attribute : public KestoObject {
public:
    virtual T value() const = 0;
};

/// One thing on a track: a video, an image, a callout and so on. Read by any thread while nobody edits.
class KESTO_EXPORT Media : public KestoObject {
public:
    /// Calls the visit operation of the media's own class.
    virtual void accept(ConstMediaDispatcher& dispatcher) const = 0;
};

/// A drawn annotation: an arrow, a text, a shape.
class KESTO_EXPORT Callout : public Media {};

/// Everything that plays in a project, on one canvas.
class KESTO_EXPORT Timeline : public KestoObject {
public:
    /// The canvas, in pixels.
    virtual boost::shared_ptr<const Attribute<float>> attributeWidth() const = 0;
    virtual boost::shared_ptr<const Attribute<float>> attributeHeight() const = 0;
};

/// A document of the editor. Its frames count from 0 at `frameRate` to the second.
class KESTO_EXPORT Project : public KestoObject {
public:
    virtual boost::shared_ptr<const Timeline> timeline() const = 0;
    virtual boost::rational<unsigned long> frameRate() const = 0;
};

/// A project behind plain types; copies share it.
class KESTO_EXPORT SimpleProject {
public:
    explicit SimpleProject(const boost::rational<unsigned long>& frameRate);

    /// Of the canvas, in pixels.
    void setCanvasWidth(double width);
    void setCanvasHeight(double height);

    boost::shared_ptr<Project> project() const;

private:
    boost::shared_ptr<Project> shared;
};

} // namespace KestoMediaLib

namespace KestoMediaLibUtl {

/// Tells what kind of media a media is.
class KESTO_EXPORT ConvertMedia {
public:
    /// `media` may be empty, and is then nothing of anything.
    explicit ConvertMedia(boost::shared_ptr<const KestoMediaLib::Media> media);

    /// The same media as a callout; empty for any other kind.
    boost::shared_ptr<const KestoMediaLib::Callout> GetCallout() const;

private:
    boost::shared_ptr<const KestoMediaLib::Media> media;
};

} // namespace KestoMediaLibUtl
