#include "KestoMediaLib/EditableMedia.h"
#include "KestoMediaLib/ProjectModel.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <limits>
#include <map>
#include <stdexcept>
#include <utility>

namespace KestoMediaLib {

namespace {

constexpr int newTracks = -1;

using Copies = std::vector<boost::shared_ptr<Media>>;

class PasteClipping final : public PasteClippingCmd {
public:
    PasteClipping(boost::shared_ptr<const Clipping> pasted, boost::shared_ptr<MixerModel> target,
                  __int64 modelTime, int trackIndex)
        : clipping(std::move(pasted))
        , mixer(std::move(target))
        , position(modelTime)
        , track(trackIndex) {}

    void execute() override {
        const auto& existing = mixer->editableTracks();
        if (track != newTracks && static_cast<std::size_t>(track) >= existing.size())
            throw std::invalid_argument("PasteClippingCmd: there is no track of that number");
        const Copies copies = movedCopies();
        if (track == newTracks)
            addNewTracks(copies);
        else
            for (const auto& copy : copies)
                existing[static_cast<std::size_t>(track)]->addMedia(copy);
    }

private:
    __int64 earliestStart() const {
        __int64 earliest = std::numeric_limits<__int64>::max();
        for (const auto& media : clipping->media())
            earliest = std::min(earliest, spanOf(*media).start);
        return earliest;
    }

    Copies movedCopies() const {
        const __int64 earliest = earliestStart();
        Copies copies;
        for (const auto& media : clipping->media()) {
            copies.push_back(cloneOf(*media));
            auto& copy = dynamic_cast<EditableMedia&>(*copies.back());
            MediaSpan span = copy.span();
            span.start = span.start - earliest + position;
            copy.setSpan(span);
        }
        return copies;
    }

    /// Media of no track of the clipping's mixer come to lie on the uppermost new track.
    std::size_t trackOf(const boost::shared_ptr<const Media>& media) const {
        const auto tracks = clipping->mixer()->tracks();
        const auto found = std::find(tracks.begin(), tracks.end(), media->parentTrack().lock());
        return static_cast<std::size_t>(found - tracks.begin());
    }

    void addNewTracks(const Copies& copies) const {
        std::map<std::size_t, boost::shared_ptr<TrackModel>> added;
        for (std::size_t i = 0; i < copies.size(); ++i) {
            auto& target = added[trackOf(clipping->media()[i])];
            if (!target)
                target = boost::make_shared<TrackModel>();
            target->addMedia(copies[i]);
        }
        for (const auto& [order, target] : added)
            mixer->addTrack(target);
    }

    boost::shared_ptr<const Clipping> clipping;
    boost::shared_ptr<MixerModel> mixer;
    __int64 position;
    int track;
};

} // namespace

Clipping::Clipping(const boost::shared_ptr<const Mixer>& from,
                   const boost::rational<unsigned long>& frameRate,
                   const std::vector<boost::shared_ptr<const Media>>& media, const std::string& name)
    : source(from)
    , rate(frameRate)
    , content(media)
    , label(name) {
    if (!source)
        throw std::invalid_argument("Clipping: the mixer is empty");
    if (std::find(content.begin(), content.end(), nullptr) != content.end())
        throw std::invalid_argument("Clipping: a media is empty");
}

boost::shared_ptr<PasteClippingCmd>
PasteClippingCmd::create(const boost::shared_ptr<const Clipping>& clipping,
                         const boost::shared_ptr<Project>& project,
                         const boost::shared_ptr<const Mixer>& mixer, __int64 position, int track) {
    if (!clipping || !project || !mixer)
        throw std::invalid_argument("PasteClippingCmd: clipping, project or mixer is empty");
    if (track < newTracks)
        throw std::invalid_argument("PasteClippingCmd: the track is below -1");
    if (position > longestModelTime || position < -longestModelTime)
        throw std::invalid_argument("PasteClippingCmd: the position lies beyond what a timeline can have");
    const auto* own = dynamic_cast<const ProjectModel*>(project.get());
    if (!own || own->editableTimeline()->mixer() != mixer)
        throw std::invalid_argument("PasteClippingCmd: the mixer is not that of the project");
    return boost::make_shared<PasteClipping>(clipping, own->editableTimeline()->editableMixer(), position,
                                             track);
}

} // namespace KestoMediaLib
