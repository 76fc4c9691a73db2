#pragma once

#include "KestoMediaLib/CalloutMedia.h"
#include "KestoMediaLib/CompoundMedia.h"
#include "KestoMediaLib/FileMedia.h"
#include "KestoMediaLib/PlainMedia.h"
#include "KestoMediaLib/ProjectModel.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <initializer_list>
#include <string>

/// Media of the model, one of each kind.
namespace SomeMedia {

using KestoMediaLib::Media;
using KestoMediaLib::VisualMedia;
using MediaPointer = boost::shared_ptr<Media>;
using VisualPointer = boost::shared_ptr<VisualMedia>;

constexpr __int64 second = KestoMediaLib::modelTimePerSecond;

inline boost::shared_ptr<KestoMediaLib::VideoClip> video(const std::string& file, int stream = -1) {
    return boost::make_shared<KestoMediaLib::VideoClip>(KestoMediaLib::SourceFile{file, stream});
}

inline boost::shared_ptr<KestoMediaLib::AudioMedia> audio(const std::string& file = "sound.wav") {
    return boost::make_shared<KestoMediaLib::AudioMedia>(KestoMediaLib::SourceFile{file});
}

inline boost::shared_ptr<KestoMediaLib::ColorMedia> color(double width = 8, double height = 4,
                                                          std::uint32_t argb = 0xFFFF0000) {
    auto media = boost::make_shared<KestoMediaLib::ColorMedia>(argb);
    media->setExtent({width, height});
    media->setSpan({.duration = second});
    return media;
}

inline boost::shared_ptr<KestoMediaLib::CalloutMedia> callout() {
    return boost::make_shared<KestoMediaLib::CalloutMedia>(boost::make_shared<KestoMediaLib::VectorDrawing>(
        "remix", "rectangle", "plain", KestoMediaLib::VectorDrawing::Params()));
}

inline boost::shared_ptr<KestoMediaLib::UnifiedClip> unified(const VisualPointer& visual) {
    return boost::make_shared<KestoMediaLib::UnifiedClip>(audio(), visual);
}

inline boost::shared_ptr<KestoMediaLib::StitchedClip> stitched(std::initializer_list<MediaPointer> parts) {
    auto clip = boost::make_shared<KestoMediaLib::StitchedClip>();
    for (const MediaPointer& part : parts)
        clip->append(part);
    return clip;
}

/// Keeps `media` on the one track of a timeline of its own.
class OnATimeline {
public:
    explicit OnATimeline(const MediaPointer& media) {
        const auto track = boost::make_shared<KestoMediaLib::TrackModel>();
        mixer->addTrack(track);
        track->addMedia(media);
    }

private:
    boost::shared_ptr<KestoMediaLib::MixerModel> mixer = boost::make_shared<KestoMediaLib::MixerModel>();
};

} // namespace SomeMedia
