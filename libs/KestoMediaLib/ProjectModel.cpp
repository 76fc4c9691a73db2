#include "KestoMediaLib/ProjectModel.h"

#include "KestoMediaLib/MediaHold.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <stdexcept>

namespace KestoMediaLib {

void TrackModel::addMedia(const boost::shared_ptr<Media>& media) {
    EditableMedia& added = MediaHold::requireFree(media, "TrackModel");
    content.push_back(media);
    MediaHold::takeOnto(added, weak_from_this());
}

std::vector<boost::shared_ptr<const Media>> TrackModel::medias() const {
    return {content.begin(), content.end()};
}

boost::shared_ptr<TrackModel> TrackModel::clone() const {
    auto copy = boost::make_shared<TrackModel>();
    copy->setHidden(isHidden);
    copy->setName(label);
    for (const auto& media : content)
        copy->addMedia(cloneOf(*media));
    return copy;
}

void MixerModel::addTrack(const boost::shared_ptr<TrackModel>& track) {
    if (!track)
        throw std::invalid_argument("MixerModel: the track is empty");
    if (track->held)
        throw std::invalid_argument("MixerModel: the track is held already");
    content.push_back(track);
    track->held = true;
    track->owner = weak_from_this();
}

std::vector<boost::shared_ptr<const Track>> MixerModel::tracks() const {
    return {content.begin(), content.end()};
}

TimelineModel::TimelineModel()
    : canvasWidth(boost::make_shared<ValueAttribute<float>>())
    , canvasHeight(boost::make_shared<ValueAttribute<float>>())
    , root(boost::make_shared<MixerModel>()) {}

ProjectModel::ProjectModel(const boost::rational<unsigned long>& frameRate)
    : rate(frameRate)
    , content(boost::make_shared<TimelineModel>()) {
    // Comparing a boost::rational with a number calls itself for ever in C++20.
    if (rate.numerator() == 0)
        throw std::invalid_argument("ProjectModel: the frame rate is 0");
}

void ProjectModel::executeCommand(const boost::shared_ptr<Command>& command) {
    if (!command)
        throw std::invalid_argument("ProjectModel: the command is empty");
    command->execute();
}

__int64 endOfProject(const Project& project) {
    __int64 end = 0;
    for (const auto& track : project.timeline()->mixer()->tracks())
        for (const auto& media : track->medias())
            end = std::max(end, endOf(spanOf(*media)));
    return end;
}

} // namespace KestoMediaLib
