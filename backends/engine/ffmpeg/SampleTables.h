#pragma once

#include "engine/ByteSource.h"
#include "engine/SampleTables.h"
#include "engine/ffmpeg/Deadline.h"
#include "engine/ffmpeg/Handles.h"
#include "engine/ffmpeg/SourceIo.h"

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

    ~SampleTables() override;

    std::span<const TrackFacts> tracks() const override { return facts; }
    SampleFacts sampleOf(std::size_t track, std::int64_t sample) const override;
    Result<void> readSample(std::size_t track, std::int64_t sample, std::span<std::byte> into) override;

private:
    SampleTables(std::unique_ptr<IByteSource> bytes, const std::string& name);

    Result<void> openContext();
    void findTracks();
    std::int64_t startOf(std::size_t track, std::int64_t sample) const;
    std::int64_t endOf(std::size_t track, std::int64_t sample) const;
    bool fill(std::span<std::byte> into);

    std::string sourceName;
    std::unique_ptr<IByteSource> source;
    Deadline limit;
    LimitedSource limited;
    IoContextPtr io;
    FormatContextPtr context; ///< reads from `io` until it is closed
    std::vector<TrackFacts> facts;
    std::vector<AVStream*> streams; ///< of each track
};

} // namespace EngineBackend
