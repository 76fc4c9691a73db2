#include "mp4v2/SampleFile.h"

#include "engine/EngineModule.h"

#include <algorithm>
#include <limits>

namespace Mp4v2Backend {

namespace {

using EngineBackend::ISampleTables;
using EngineBackend::SampleFacts;
using EngineBackend::TrackFacts;

std::string textOf(std::uint32_t fourCharacters) {
    std::string text;
    for (unsigned shift = 0; shift < 32 && fourCharacters != 0; shift += 8)
        text += static_cast<char>(fourCharacters >> shift & 0xFFU);
    return text;
}

/// The last of `count` samples that begins at `when` or before it; below 0 for none.
std::int64_t lastBeginning(const ISampleTables& tables, std::size_t track, std::int64_t count,
                           std::int64_t when) {
    std::int64_t low = 0;
    std::int64_t high = count;
    while (low < high) {
        const std::int64_t middle = low + (high - low) / 2;
        if (tables.sampleOf(track, middle).start <= when)
            low = middle + 1;
        else
            high = middle;
    }
    return low - 1;
}

bool covers(const SampleFacts& sample, std::int64_t when) {
    // A picture that stands alone may last no time at all, and is there at its start.
    return when < sample.end || (when == sample.start && sample.end == sample.start);
}

} // namespace

SampleFile::SampleFile(std::unique_ptr<ISampleTables> opened)
    : tables(std::move(opened)) {
    for (const TrackFacts& track : tables->tracks())
        formats.push_back(textOf(track.sampleFormat));
}

std::unique_ptr<SampleFile> SampleFile::open(const std::string& path) {
    auto opened = EngineBackend::openSampleTables(path);
    return opened ? std::unique_ptr<SampleFile>(new SampleFile(std::move(*opened))) : nullptr;
}

std::optional<MP4TrackId> SampleFile::idOf(std::size_t index) const {
    return index < trackCount() ? std::optional(tables->tracks()[index].id) : std::nullopt;
}

std::optional<std::size_t> SampleFile::indexOf(MP4TrackId track) const {
    const auto tracks = tables->tracks();
    const auto found = std::find_if(tracks.begin(), tracks.end(),
                                    [track](const TrackFacts& facts) { return facts.id == track; });
    return found != tracks.end() ? std::optional(static_cast<std::size_t>(found - tracks.begin()))
                                 : std::nullopt;
}

const char* SampleFile::formatOf(MP4TrackId track) const {
    const auto index = indexOf(track);
    return index && !formats[*index].empty() ? formats[*index].c_str() : nullptr;
}

const TrackFacts* SampleFile::factsOf(MP4TrackId track) const {
    const auto index = indexOf(track);
    return index ? &tables->tracks()[*index] : nullptr;
}

std::optional<MP4SampleId> SampleFile::sampleAt(MP4TrackId track, MP4Timestamp when) const {
    const auto index = indexOf(track);
    if (!index || when > static_cast<MP4Timestamp>(std::numeric_limits<std::int64_t>::max()))
        return std::nullopt;
    const auto ticks = static_cast<std::int64_t>(when);
    const std::int64_t sample = lastBeginning(*tables, *index, tables->tracks()[*index].sampleCount, ticks);
    if (sample < 0 || !covers(tables->sampleOf(*index, sample), ticks))
        return std::nullopt;
    return static_cast<MP4SampleId>(sample + 1);
}

std::optional<MP4SampleId> SampleFile::syncSampleFrom(MP4TrackId track, MP4SampleId sample) const {
    for (; const auto found = sampleOf(track, sample); ++sample)
        if (found->isSync)
            return sample;
    return std::nullopt;
}

std::optional<SampleFacts> SampleFile::sampleOf(MP4TrackId track, MP4SampleId sample) const {
    const auto index = indexOf(track);
    if (!index || sample < 1 || sample > tables->tracks()[*index].sampleCount)
        return std::nullopt;
    return tables->sampleOf(*index, std::int64_t{sample} - 1);
}

bool SampleFile::read(MP4TrackId track, MP4SampleId sample, std::span<std::byte> into) {
    if (!sampleOf(track, sample))
        return false;
    return tables->readSample(*indexOf(track), std::int64_t{sample} - 1, into).has_value();
}

} // namespace Mp4v2Backend
