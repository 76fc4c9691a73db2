#pragma once

#include "engine/ByteSource.h"
#include "engine/SampleTables.h"
#include "engine/ffmpeg/OpenContainer.h"

#include <memory>
#include <string>
#include <vector>

struct AVStream;

namespace EngineBackend {

/// Over the index that libavformat makes of the tables.
class SampleTables : public ISampleTables {
public:
    static Result<std::unique_ptr<ISampleTables>> open(std::unique_ptr<IByteSource> source,
                                                       const std::string& name);

    std::span<const TrackFacts> tracks() const override { return facts; }
    SampleFacts sampleOf(std::size_t track, std::int64_t sample) const override;
    Result<void> readSample(std::size_t track, std::int64_t sample, std::span<std::byte> into) override;

private:
    explicit SampleTables(std::unique_ptr<OpenContainer> opened)
        : container(std::move(opened)) {}

    void findTracks();
    std::int64_t startOf(std::size_t track, std::int64_t sample) const;
    std::int64_t endOf(std::size_t track, std::int64_t sample) const;
    bool fill(std::span<std::byte> into);

    std::unique_ptr<OpenContainer> container;
    std::vector<TrackFacts> facts;
    std::vector<AVStream*> streams; ///< of each track
};

} // namespace EngineBackend
