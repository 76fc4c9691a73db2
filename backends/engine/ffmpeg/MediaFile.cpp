#include "engine/ffmpeg/MediaFile.h"

#include "engine/ffmpeg/Ticks.h"
#include "engine/ffmpeg/VideoReader.h"

#include <algorithm>
#include <cstdint>
#include <tuple>

namespace EngineBackend {

namespace {

/// A cover is shown for want of anything that moves; of several streams the one marked as default, then the
/// largest.
auto rankOf(const StreamFacts& facts) {
    const PictureSize size = facts.video.codedSize;
    return std::tuple(!facts.video.isAttachedPicture, facts.isDefault,
                      std::int64_t{size.width} * size.height);
}

} // namespace

Result<std::unique_ptr<IMediaFile>> MediaFile::open(std::unique_ptr<IByteSource> source,
                                                    const std::string& name) {
    auto demuxer = Demuxer::open(std::move(source), name);
    if (!demuxer)
        return tl::unexpected(demuxer.error());
    return std::make_unique<MediaFile>(std::move(*demuxer));
}

int bestVideoStreamOf(std::span<const StreamFacts> streams) {
    const StreamFacts* best = nullptr;
    for (const StreamFacts& facts : streams)
        if (facts.kind == StreamKind::Video && (!best || rankOf(facts) > rankOf(*best)))
            best = &facts;
    return best ? best->index : -1;
}

std::vector<Rational> MediaFile::keyFrameTimes(int stream) const {
    std::vector<Rational> times;
    if (stream < 0 || static_cast<std::size_t>(stream) >= streams().size())
        return times;
    const Rational timeBase = streams()[static_cast<std::size_t>(stream)].timeBase;
    for (const std::int64_t ticks : demuxer->keyFrameTicks(stream))
        times.push_back(secondsOf(ticks - demuxer->originOf(stream), timeBase));
    return times;
}

Result<std::unique_ptr<IVideoReader>> MediaFile::readVideo(int stream, const VideoOptions& options) {
    return VideoReader::open(demuxer, stream, options);
}

} // namespace EngineBackend
