#pragma once

#include "engine/SampleTables.h"

#include "platform/Mp4v2.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Mp4v2Backend {

/// An open file by the numbers of its tracks and samples. A number that is not there gives nothing.
class SampleFile {
public:
    /// Null when the file can't be read.
    static std::unique_ptr<SampleFile> open(const std::string& path);

    std::size_t trackCount() const { return tables->tracks().size(); }
    /// `index` counts from 0.
    std::optional<MP4TrackId> idOf(std::size_t index) const;

    /// Null for a track without; valid as long as this lives.
    const char* formatOf(MP4TrackId track) const;
    const EngineBackend::TrackFacts* factsOf(MP4TrackId track) const;

    std::optional<MP4SampleId> sampleAt(MP4TrackId track, MP4Timestamp when) const;
    /// That sample, or the first behind it that can be decoded by itself.
    std::optional<MP4SampleId> syncSampleFrom(MP4TrackId track, MP4SampleId sample) const;
    std::optional<EngineBackend::SampleFacts> sampleOf(MP4TrackId track, MP4SampleId sample) const;

    /// False for a sample that the file doesn't hold whole, and when `into` is not of its size.
    bool read(MP4TrackId track, MP4SampleId sample, std::span<std::byte> into);

private:
    explicit SampleFile(std::unique_ptr<EngineBackend::ISampleTables> opened);

    std::optional<std::size_t> indexOf(MP4TrackId track) const;

    std::unique_ptr<EngineBackend::ISampleTables> tables;
    std::vector<std::string> formats; ///< of each track
};

} // namespace Mp4v2Backend
