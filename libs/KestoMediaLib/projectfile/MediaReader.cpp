#include "KestoMediaLib/projectfile/MediaReader.h"

#include "KestoMediaLib/CompoundMedia.h"
#include "KestoMediaLib/PlainMedia.h"
#include "KestoMediaLib/ProjectModel.h"
#include "KestoMediaLib/projectfile/ContentReaders.h"
#include "KestoMediaLib/projectfile/MediaKinds.h"
#include "KestoMediaLib/projectfile/ValueReaders.h"

#include <boost/make_shared.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace KestoMediaLib::ProjectReading {

namespace {

constexpr NumberRule playRateRule = {"a play rate", 0.001, 1000};
constexpr __int64 playRateParts = 1'000'000;

/// How many media lie inside one another in `media`, itself not counted.
int depthOf(const Media& media) {
    int deepest = 0;
    for (const auto& inner : innerMedia(media))
        deepest = std::max(deepest, 1 + depthOf(*inner));
    return deepest;
}

} // namespace

void MediaReader::readLibrary(const JsonPlace& place) {
    libraryPlace = &place;
    if (!place.value.is_object()) {
        context.errors.expected(place, "an object");
        return;
    }
    for (const auto& [name, media] : place.value.items())
        library.emplace(name, Entry());
    for (auto& [name, entry] : library) {
        if (context.errors.any())
            return;
        if (entry.progress == Progress::Unread)
            readEntry({place.value.at(name), &place, name}, name, entry);
    }
}

std::vector<boost::shared_ptr<TrackModel>> MediaReader::readTracks(const JsonPlace& place) {
    std::vector<boost::shared_ptr<TrackModel>> tracks;
    for (const JsonPlace& track : elementsOf(place, context.errors)) {
        tracks.push_back(readTrack(track));
        if (context.errors.any())
            break;
    }
    return tracks;
}

boost::shared_ptr<TrackModel> MediaReader::readTrack(const JsonPlace& place) {
    context.spend(ReadContext::mediaCost, place);
    auto track = boost::make_shared<TrackModel>();
    ObjectReader object(place, context.errors);
    if (const auto name = object.optional("name"))
        track->setName(readText(*name, context.errors));
    if (const auto hidden = object.optional("hidden"))
        track->setHidden(readFlag(*hidden, context.errors));
    if (const auto media = object.required("media"))
        for (const JsonPlace& element : elementsOf(*media, context.errors)) {
            const auto read = readMedia(element, Role::OnTrack);
            if (context.errors.any())
                return track;
            track->addMedia(read);
        }
    object.finish();
    return track;
}

/// Never empty while there is no error.
boost::shared_ptr<Media> MediaReader::readMedia(const JsonPlace& place, Role role) {
    if (level > deepest) {
        context.errors.report(place, fmt::format("expected at most {} media inside one another", deepest));
        return {};
    }
    ++level;
    ObjectReader object(place, context.errors);
    const auto used = object.optional("use");
    auto media = used ? readUse(*used, object, role) : readNewMedia(object, role);
    object.finish();
    --level;
    return media;
}

boost::shared_ptr<Media> MediaReader::readNewMedia(ObjectReader& object, Role role) {
    context.spend(ReadContext::mediaCost, object.place());
    const auto kindPlace = object.required("kind");
    const Kinds::Kind* kind = kindPlace ? Kinds::find(*kindPlace, context.errors) : nullptr;
    if (!kind || context.errors.any())
        return {};
    if (kind->inSequenceAlone && role != Role::InSequence) {
        context.errors.report(*kindPlace,
                              fmt::format("expected a {} as a part of stitched media alone", kind->name));
        return {};
    }
    auto media = kind->read(*this, object);
    if (!media || context.errors.any())
        return {};
    if (auto* visual = dynamic_cast<EditableVisual*>(media.get())) {
        Kinds::readExtent(object, context, kind->extent, *visual);
        if (role != Role::Inside)
            visual->setPlacement(readPlacement(object, context));
    }
    if (role != Role::Inside)
        readSpan(object, role, media);
    return media;
}

void MediaReader::readSpan(ObjectReader& object, Role role, const boost::shared_ptr<Media>& media) {
    MediaSpan span;
    if (const auto duration = object.required("duration"))
        span.duration = readTime(*duration, context.errors);
    if (const auto start = role == Role::OnTrack ? object.optional("start") : std::nullopt)
        span.start = readTime(*start, context.errors);
    if (const auto mediaStart = object.optional("mediaStart"))
        span.mediaStart = readTime(*mediaStart, context.errors);
    if (const auto rate = object.optional("playRate"))
        span.playRate = readRational(*rate, playRateRule, playRateParts, context.errors);
    dynamic_cast<EditableMedia&>(*media).setSpan(span);
}

boost::shared_ptr<Media> MediaReader::readUse(const JsonPlace& name, ObjectReader& object, Role role) {
    const Entry* entry = wholeEntry(name);
    if (!entry || context.errors.any())
        return {};
    if (level - 1 + entry->depth > deepest) {
        context.errors.report(name, fmt::format("expected at most {} media inside one another", deepest));
        return {};
    }
    if (role != Role::InSequence && dynamic_cast<const GapMedia*>(entry->media.get()))
        context.errors.report(name, "expected a gap as a part of stitched media alone");
    context.spend(entry->cost, name);
    if (context.errors.any())
        return {};
    auto copy = cloneOf(*entry->media);
    auto& editable = dynamic_cast<EditableMedia&>(*copy);
    MediaSpan span = editable.span();
    if (const auto start = role == Role::OnTrack ? object.optional("start") : std::nullopt)
        span.start = readTime(*start, context.errors);
    editable.setSpan(span);
    return copy;
}

const MediaReader::Entry* MediaReader::wholeEntry(const JsonPlace& place) {
    const std::string name = readText(place, context.errors);
    const auto found = library.find(name);
    if (found == library.end()) {
        context.errors.expected(place, "the name of a media of the library");
        return nullptr;
    }
    Entry& entry = found->second;
    switch (entry.progress) {
    case Progress::Unread:
        --level; // the entry takes the place of the media that uses it
        readEntry({libraryPlace->value.at(name), libraryPlace, found->first}, name, entry);
        ++level;
        break;
    case Progress::Reading:
        reportCycle(place, name);
        return nullptr;
    case Progress::Whole:
        break;
    }
    return &entry;
}

void MediaReader::readEntry(const JsonPlace& place, const std::string& name, Entry& entry) {
    const std::size_t costAround = std::exchange(context.costOfEntry, 0);
    entry.progress = Progress::Reading;
    beingRead.push_back(name);
    entry.media = readMedia(place, Role::InSequence);
    beingRead.pop_back();
    entry.progress = Progress::Whole;
    entry.cost = std::exchange(context.costOfEntry, costAround);
    if (context.errors.any())
        return;
    entry.depth = depthOf(*entry.media);
}

void MediaReader::reportCycle(const JsonPlace& place, const std::string& name) {
    const auto first = std::find(beingRead.begin(), beingRead.end(), name);
    context.errors.report(place, fmt::format("expected no media that holds itself, found {} > {}",
                                             fmt::join(first, beingRead.end(), " > "), name));
}

} // namespace KestoMediaLib::ProjectReading
