#pragma once

#include "engine/Engine.h"
#include "engine/ffmpeg/Demuxer.h"

#include <memory>
#include <span>

namespace EngineBackend {

/// The stream of video that a player would show, or -1.
int bestVideoStreamOf(std::span<const StreamFacts> streams);

class MediaFile : public IMediaFile {
public:
    static Result<std::unique_ptr<IMediaFile>> open(std::unique_ptr<IByteSource> source,
                                                    const std::string& name);

    explicit MediaFile(std::unique_ptr<Demuxer> opened)
        : demuxer(std::move(opened)) {}

    std::string format() const override { return demuxer->format(); }
    std::optional<Rational> duration() const override { return demuxer->duration(); }
    std::span<const StreamFacts> streams() const override { return demuxer->streams(); }
    int bestVideoStream() const override { return bestVideoStreamOf(streams()); }
    std::vector<Rational> keyFrameTimes(int stream) const override;
    Result<std::unique_ptr<IVideoReader>> readVideo(int stream, const VideoOptions& options) override;

private:
    std::shared_ptr<Demuxer> demuxer;
};

} // namespace EngineBackend
