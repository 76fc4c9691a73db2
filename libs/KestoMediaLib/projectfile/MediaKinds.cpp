#include "KestoMediaLib/projectfile/MediaKinds.h"

#include "KestoMediaLib/CompoundMedia.h"
#include "KestoMediaLib/PlainMedia.h"
#include "KestoMediaLib/ProjectModel.h"
#include "KestoMediaLib/projectfile/ContentReaders.h"
#include "KestoMediaLib/projectfile/ValueReaders.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <fmt/format.h>

#include <array>
#include <utility>

namespace KestoMediaLib::ProjectReading {

namespace {

constexpr NumberRule pageRule = {"a page number", 1, 1'000'000};

template <class Clip>
boost::shared_ptr<Media> readFileMedia(ReadContext& context, ObjectReader& object) {
    return boost::make_shared<Clip>(readSourceFile(object, context));
}

/// That of the first part which has one.
KeyFramedVector extentOfParts(const StitchedClip& clip) {
    for (const auto& part : clip.medias()) {
        const auto* visual = dynamic_cast<const EditableVisual*>(part.get());
        if (visual && visual->extent().at(0).valueAt(0) > 0)
            return visual->extent();
    }
    return {};
}

} // namespace

std::span<const MediaReader::Kinds::Kind> MediaReader::Kinds::all() {
    static constexpr std::array<Kind, 14> kinds = {{
        {"animatedGif", [](auto& r, auto& o) { return readFileMedia<AnimatedGifClip>(r.context, o); },
         Extent::Optional},
        {"audio", readAudio, Extent::None},
        {"callout", [](auto& r, auto& o) -> boost::shared_ptr<Media> { return readCallout(o, r.context); },
         Extent::Required},
        {"color", readColor, Extent::Required},
        {"document", readDocument, Extent::Optional},
        {"freezeFrame", readFreezeFrame, Extent::Optional},
        {"gap", [](auto&, auto&) -> boost::shared_ptr<Media> { return boost::make_shared<GapMedia>(); },
         Extent::None, true},
        {"group", readGroup, Extent::Required},
        {"image", [](auto& r, auto& o) { return readFileMedia<ImageClip>(r.context, o); }, Extent::Optional},
        {"placeholder",
         [](auto&, auto&) -> boost::shared_ptr<Media> { return boost::make_shared<PlaceholderMedia>(); },
         Extent::Required},
        {"screenRecording", [](auto& r, auto& o) { return readFileMedia<ScreenRecordingClip>(r.context, o); },
         Extent::Optional},
        {"stitched", readStitched, Extent::Optional},
        {"unified", readUnified, Extent::None},
        {"video", [](auto& r, auto& o) { return readFileMedia<VideoClip>(r.context, o); }, Extent::Optional},
    }};
    return kinds;
}

const MediaReader::Kinds::Kind* MediaReader::Kinds::find(const JsonPlace& name, FirstError& errors) {
    std::vector<std::string_view> names;
    for (const Kind& kind : all())
        names.push_back(kind.name);
    const std::string chosen = readChoice(name, names, errors);
    for (const Kind& kind : all())
        if (kind.name == chosen)
            return &kind;
    return nullptr;
}

void MediaReader::Kinds::readExtent(ObjectReader& object, ReadContext& context, Extent rule,
                                    EditableVisual& visual) {
    if (rule == Extent::None)
        return;
    ReadExtent extent = ProjectReading::readExtent(object, context);
    if (extent.width && extent.height)
        visual.setExtent({std::move(*extent.width), std::move(*extent.height)});
    else if (rule == Extent::Required || extent.width || extent.height)
        context.errors.report(object.place(), "expected the members \"width\" and \"height\" together");
}

boost::shared_ptr<Media> MediaReader::Kinds::readAudio(MediaReader& reader, ObjectReader& object) {
    return boost::make_shared<AudioMedia>(readSourceFile(object, reader.context));
}

boost::shared_ptr<Media> MediaReader::Kinds::readDocument(MediaReader& reader, ObjectReader& object) {
    std::string path;
    int page = 1;
    if (const auto file = object.required("file"))
        path = readPath(*file, reader.context);
    if (const auto number = object.optional("page"))
        page = static_cast<int>(readWhole(*number, pageRule, reader.context.errors));
    return boost::make_shared<DocumentMedia>(path, page);
}

boost::shared_ptr<Media> MediaReader::Kinds::readFreezeFrame(MediaReader& reader, ObjectReader& object) {
    const SourceFile source = readSourceFile(object, reader.context);
    SafeRational time;
    if (const auto held = object.required("time"))
        time = RationalUtil::toSeconds(readTime(*held, reader.context.errors));
    return boost::make_shared<FreezeFrameMedia>(source, time);
}

boost::shared_ptr<Media> MediaReader::Kinds::readColor(MediaReader& reader, ObjectReader& object) {
    ArgbColor color = 0;
    if (const auto member = object.required("color"))
        color = ProjectReading::readColor(*member, reader.context.errors);
    return boost::make_shared<ColorMedia>(color);
}

boost::shared_ptr<Media> MediaReader::Kinds::readUnified(MediaReader& reader, ObjectReader& object) {
    const auto audioPlace = object.required("audio");
    const auto visualPlace = object.required("visual");
    if (!audioPlace || !visualPlace)
        return {};
    const auto audio = reader.readMedia(*audioPlace, Role::Inside);
    const auto visual =
        boost::dynamic_pointer_cast<VisualMedia>(reader.readMedia(*visualPlace, Role::Inside));
    if (!dynamic_cast<const AudioMedia*>(audio.get()))
        reader.context.errors.report(*audioPlace, "expected a media of kind audio, found another");
    if (!visual)
        reader.context.errors.report(*visualPlace, "expected a media that can be seen, found another");
    if (reader.context.errors.any())
        return {};
    return boost::make_shared<UnifiedClip>(audio, visual);
}

boost::shared_ptr<Media> MediaReader::Kinds::readStitched(MediaReader& reader, ObjectReader& object) {
    auto clip = boost::make_shared<StitchedClip>();
    const auto parts = object.required("parts");
    if (!parts)
        return clip;
    for (const JsonPlace& place : elementsOf(*parts, reader.context.errors)) {
        const auto part = reader.readMedia(place, Role::InSequence);
        if (reader.context.errors.any())
            return clip;
        if (endOf(spanOf(*part)) > longestModelTime - lengthOf(*clip)) {
            reader.context.errors.report(place, "expected parts that end within a hundred years");
            return clip;
        }
        clip->append(part);
    }
    clip->setExtent(extentOfParts(*clip));
    return clip;
}

boost::shared_ptr<Media> MediaReader::Kinds::readGroup(MediaReader& reader, ObjectReader& object) {
    auto group = boost::make_shared<GroupMedia>();
    if (const auto tracks = object.required("tracks"))
        for (const auto& track : reader.readTracks(*tracks))
            group->addTrack(track);
    return group;
}

} // namespace KestoMediaLib::ProjectReading
