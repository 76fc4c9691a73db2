#pragma once

#include "engine/Engine.h"
#include "engine/ffmpeg/Demuxer.h"
#include "engine/ffmpeg/FrameFinder.h"
#include "engine/ffmpeg/PixelConverter.h"
#include "engine/ffmpeg/VideoDecoder.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace EngineBackend {

/// Keeps the last pictures, so that asking again costs nothing.
class VideoReader : public IVideoReader {
public:
    static Result<std::unique_ptr<IVideoReader>> open(std::shared_ptr<Demuxer> demuxer, int stream,
                                                      const VideoOptions& options);

    const StreamFacts& facts() const override { return demuxer->streams()[static_cast<std::size_t>(stream)]; }
    bool canScaleTo(PictureSize size) const override;
    Result<TimedPicture> pictureAt(Rational time, PictureSize size) override;

private:
    struct KeptPicture {
        std::int64_t from = 0; ///< ticks that are known to give this picture: [from, until)
        std::int64_t until = 0;
        TimedPicture timed;
    };

    VideoReader(std::shared_ptr<Demuxer> source, int streamIndex, std::unique_ptr<VideoDecoder> frames);

    Result<FoundFrame> frameAt(std::int64_t ticks);
    const KeptPicture* findKept(std::int64_t ticks, PictureSize size) const;
    void keep(std::int64_t ticks, const FoundFrame& found, const TimedPicture& timed);
    Error named(Error error) const;

    std::shared_ptr<Demuxer> demuxer;
    int stream;
    std::unique_ptr<VideoDecoder> decoder;
    FrameFinder finder;
    PixelConverter converter;
    FoundFrame last;               ///< for another size of it; empty at first
    std::vector<KeptPicture> kept; ///< the latest last
};

} // namespace EngineBackend
