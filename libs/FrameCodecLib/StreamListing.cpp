#include "platform/FrameCodecListing.h"

#include "engine/Engine.h"
#include "engine/EngineModule.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace FrameCodecLib {

namespace {

using EngineBackend::StreamFacts;
using EngineBackend::StreamKind;

bool isMp4Family(std::string_view format) {
    return format.starts_with("mov,");
}

/// The engine lists all names of a container, the most usual one first but for this family.
std::string wordFor(const std::string& format) {
    return isMp4Family(format) ? "mp4" : format.substr(0, format.find(','));
}

StreamContent contentOf(StreamKind kind) {
    switch (kind) {
    case StreamKind::Video:
        return StreamContent::Video;
    case StreamKind::Audio:
        return StreamContent::Audio;
    case StreamKind::Subtitle:
    case StreamKind::Other:
        return StreamContent::Other;
    }
    return StreamContent::Other;
}

ListedStream listed(const StreamFacts& facts, bool hasSampleFormat) {
    ListedStream stream;
    stream.content = contentOf(facts.kind);
    stream.format = hasSampleFormat ? codecTagText(facts) : facts.codec;
    stream.width = facts.video.displaySize.width;
    stream.height = facts.video.displaySize.height;
    stream.duration = facts.duration;
    return stream;
}

bool hasFormat(const ListedStream& stream) {
    return !stream.format.empty();
}

/// Covers stand behind the tracks: the numbers of these stay as they are.
std::span<const StreamFacts> withoutCovers(std::span<const StreamFacts> streams) {
    while (!streams.empty() && streams.back().video.isAttachedPicture)
        streams = streams.first(streams.size() - 1);
    return streams;
}

} // namespace

StreamListing ListStreams(const std::string& fileName) {
    const auto file = EngineBackend::openMediaFile(fileName);
    if (!file)
        return {};
    const std::string format = (*file)->format();
    const bool isMp4 = isMp4Family(format);
    StreamListing listing{wordFor(format), {}};
    for (const StreamFacts& facts : withoutCovers((*file)->streams()))
        listing.streams.push_back(listed(facts, isMp4));
    if (isMp4 && std::none_of(listing.streams.begin(), listing.streams.end(), hasFormat))
        return {}; // the header is cut in its first track
    return listing.streams.empty() ? StreamListing() : listing;
}

} // namespace FrameCodecLib
