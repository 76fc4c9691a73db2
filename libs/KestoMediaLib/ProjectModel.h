#pragma once

#include "KestoMediaLib/ValueAttribute.h"
#include "platform/KestoMediaModel.h"

#include <boost/enable_shared_from_this.hpp>

#include <string>
#include <utility>
#include <vector>

namespace KestoMediaLib {

/// Always owned by a `boost::shared_ptr`, as mixers are: what lies in it points back.
class KESTO_EXPORT TrackModel final : public Track, public boost::enable_shared_from_this<TrackModel> {
public:
    /// Throws std::invalid_argument for an empty pointer, a media of another model, and one that something
    /// holds already.
    void addMedia(const boost::shared_ptr<Media>& media);
    void setHidden(bool hidden) { isHidden = hidden; }
    void setName(std::string name) { label = std::move(name); }
    /// For people; may be empty.
    const std::string& name() const { return label; }

    boost::weak_ptr<const Mixer> parentMixer() const override { return owner; }
    std::vector<boost::shared_ptr<const Media>> medias() const override;
    bool hidden() const override { return isHidden; }

    /// A copy with copies of its media, in no mixer.
    boost::shared_ptr<TrackModel> clone() const;

private:
    friend class GroupMedia;
    friend class MixerModel;

    std::vector<boost::shared_ptr<Media>> content;
    boost::weak_ptr<const Mixer> owner;
    std::string label;
    bool isHidden = false;
    bool held = false;
};

class KESTO_EXPORT MixerModel final : public Mixer, public boost::enable_shared_from_this<MixerModel> {
public:
    /// On top of the others. Throws std::invalid_argument for an empty pointer and for a track that is in a
    /// mixer or a group already.
    void addTrack(const boost::shared_ptr<TrackModel>& track);

    std::vector<boost::shared_ptr<const Track>> tracks() const override;
    const std::vector<boost::shared_ptr<TrackModel>>& editableTracks() const { return content; }

private:
    std::vector<boost::shared_ptr<TrackModel>> content;
};

class KESTO_EXPORT TimelineModel final : public Timeline {
public:
    TimelineModel();

    /// In pixels.
    void setWidth(float width) { canvasWidth->setValue(width); }
    void setHeight(float height) { canvasHeight->setValue(height); }

    boost::shared_ptr<const Attribute<float>> attributeWidth() const override { return canvasWidth; }
    boost::shared_ptr<const Attribute<float>> attributeHeight() const override { return canvasHeight; }
    boost::shared_ptr<const Mixer> mixer() const override { return root; }
    const boost::shared_ptr<MixerModel>& editableMixer() const { return root; }

private:
    boost::shared_ptr<ValueAttribute<float>> canvasWidth;
    boost::shared_ptr<ValueAttribute<float>> canvasHeight;
    boost::shared_ptr<MixerModel> root;
};

class KESTO_EXPORT ProjectModel final : public Project, private ICommandInterface {
public:
    /// Throws std::invalid_argument for a frame rate of 0.
    explicit ProjectModel(const boost::rational<unsigned long>& frameRate);

    boost::shared_ptr<const Timeline> timeline() const override { return content; }
    const boost::shared_ptr<TimelineModel>& editableTimeline() const { return content; }
    boost::rational<unsigned long> frameRate() const override { return rate; }
    ICommandInterface& commandInterface() override { return *this; }

private:
    void executeCommand(const boost::shared_ptr<Command>& command) override;

    boost::rational<unsigned long> rate;
    boost::shared_ptr<TimelineModel> content;
};

} // namespace KestoMediaLib
