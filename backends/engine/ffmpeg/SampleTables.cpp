#include "engine/ffmpeg/SampleTables.h"

#include <fmt/format.h>

extern "C" {
#include <libavformat/avformat.h>
}

namespace EngineBackend {

namespace {

constexpr int largestSize = (1 << 30) - 1; // the index has 30 bits for it, which it takes for signed
constexpr auto mp4Family = "mov,mp4,m4a,3gp,3g2,mj2";

const AVIndexEntry& entryOf(AVStream* stream, std::int64_t sample) {
    return *avformat_index_get_entry(stream, static_cast<int>(sample));
}

TrackFacts factsOf(AVStream& stream) {
    TrackFacts facts;
    facts.id = static_cast<std::uint32_t>(stream.id);
    facts.sampleFormat = stream.codecpar->codec_tag;
    facts.ticksPerSecond = stream.time_base.num == 1 ? stream.time_base.den : 0;
    facts.durationInTicks = stream.duration != AV_NOPTS_VALUE && stream.duration > 0 ? stream.duration : 0;
    facts.sampleCount = avformat_index_get_entries_count(&stream);
    return facts;
}

// Damaged files have times of any size; what no number holds is any number then.
std::int64_t sumOf(std::int64_t one, std::int64_t other) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(one) + static_cast<std::uint64_t>(other));
}
std::int64_t ticksBetween(std::int64_t start, std::int64_t end) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(end) - static_cast<std::uint64_t>(start));
}

/// A cover that the file's own description holds has a stream, too, and no number of a track.
bool isTrack(const AVStream& stream) {
    return stream.id > 0;
}

} // namespace

Result<std::unique_ptr<ISampleTables>> SampleTables::open(std::unique_ptr<IByteSource> source,
                                                          const std::string& name) {
    auto opened =
        OpenContainer::open(std::move(source), name, {.formats = mp4Family, .ignoresEditLists = true});
    if (!opened)
        return tl::unexpected(opened.error());
    std::unique_ptr<SampleTables> tables(new SampleTables(std::move(*opened)));
    tables->findTracks();
    return tables;
}

void SampleTables::findTracks() {
    const AVFormatContext& context = container->context();
    for (AVStream* stream : std::span(context.streams, context.nb_streams)) {
        if (!isTrack(*stream))
            continue;
        facts.push_back(factsOf(*stream));
        streams.push_back(stream);
    }
}

std::int64_t SampleTables::startOf(std::size_t track, std::int64_t sample) const {
    // Where pictures are shown before they are decoded, libavformat shifts all of a track's times.
    return ticksBetween(entryOf(streams[track], 0).timestamp, entryOf(streams[track], sample).timestamp);
}

std::int64_t SampleTables::endOf(std::size_t track, std::int64_t sample) const {
    if (sample + 1 < facts[track].sampleCount)
        return startOf(track, sample + 1);
    const std::int64_t start = startOf(track, sample);
    if (facts[track].durationInTicks > start)
        return facts[track].durationInTicks;
    // Where the header's duration can't be right: as long as the one before it.
    return sample > 0 ? sumOf(start, ticksBetween(startOf(track, sample - 1), start)) : start;
}

SampleFacts SampleTables::sampleOf(std::size_t track, std::int64_t sample) const {
    const AVIndexEntry& entry = entryOf(streams[track], sample);
    return {.place = entry.pos,
            .bytes = entry.size & largestSize,
            .start = startOf(track, sample),
            .end = endOf(track, sample),
            .isSync = (entry.flags & AVINDEX_KEYFRAME) != 0};
}

Result<void> SampleTables::readSample(std::size_t track, std::int64_t sample, std::span<std::byte> into) {
    container->deadline().begin();
    const SampleFacts wanted = sampleOf(track, sample);
    const bool isWhole = static_cast<std::size_t>(wanted.bytes) == into.size() &&
                         container->source().seek(wanted.place) && fill(into);
    if (container->deadline().isPassed())
        return failure(ErrorKind::OutOfTime,
                       fmt::format("{}: reading a sample took too long", container->name()));
    if (!isWhole)
        return failure(ErrorKind::Damaged,
                       fmt::format("{}: sample {} of track {}: {} bytes are expected at {}",
                                   container->name(), sample, track, wanted.bytes, wanted.place));
    return {};
}

bool SampleTables::fill(std::span<std::byte> into) {
    while (!into.empty() && !container->deadline().isPassed()) {
        const std::int64_t got = container->source().read(into);
        if (got <= 0)
            return false;
        into = into.subspan(static_cast<std::size_t>(got));
    }
    return into.empty();
}

} // namespace EngineBackend
