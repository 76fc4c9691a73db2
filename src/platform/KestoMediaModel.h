#pragma once

#include "platform/KestoMedia.h"
#include "platform/KestoMediaAttribute.h"
#include "platform/KestoMediaCallout.h"
#include "platform/KestoMediaDispatcher.h"
#include "platform/KestoMediaEdit.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <vector>

namespace KestoMediaLib {

class KESTO_EXPORT Track : public KestoObject {
public:
    /// Empty for a track that is in no mixer, as one inside a group.
    virtual boost::weak_ptr<const Mixer> parentMixer() const = 0;
    /// By order of drawing: where two play at a time, the later one lies above.
    virtual std::vector<boost::shared_ptr<const Media>> medias() const = 0;
    /// A hidden track shows nothing and keeps its media.
    virtual bool hidden() const = 0;
};

/// The tracks of a timeline.
class KESTO_EXPORT Mixer : public KestoObject {
public:
    /// From the bottom to the top.
    virtual std::vector<boost::shared_ptr<const Track>> tracks() const = 0;
};

/// Everything that plays in a project, on one canvas.
class KESTO_EXPORT Timeline : public KestoObject {
public:
    /// The canvas, in pixels.
    virtual boost::shared_ptr<const Attribute<float>> attributeWidth() const = 0;
    virtual boost::shared_ptr<const Attribute<float>> attributeHeight() const = 0;

    /// Never empty.
    virtual boost::shared_ptr<const Mixer> mixer() const = 0;
};

/// A document of the editor. Its frames count from 0 at `frameRate` to the second.
class KESTO_EXPORT Project : public KestoObject {
public:
    virtual boost::shared_ptr<const Timeline> timeline() const = 0;
    virtual boost::rational<unsigned long> frameRate() const = 0;
    virtual ICommandInterface& commandInterface() = 0;
};

/// The first moment, in model time, from which on nothing plays in `project` any more; 0 for an empty one.
KESTO_EXPORT __int64 endOfProject(const Project& project);

/// A project behind plain types; copies share it.
class KESTO_EXPORT SimpleProject {
public:
    /// An empty project with a canvas of 0 by 0.
    explicit SimpleProject(const boost::rational<unsigned long>& frameRate);

    /// Of the canvas, in pixels.
    void setCanvasWidth(double width);
    void setCanvasHeight(double height);

    boost::shared_ptr<Project> project() const;

private:
    boost::shared_ptr<ProjectModel> shared;
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
