#pragma once

#include "platform/MOSK.h"

#include "MOSK/Recording.h"

#include <memory>

namespace MOSK {

/// A track over a reader of the engine, which is made when the first frame is asked for.
class TrackReader : public MP4TrackReader {
public:
    TrackReader(std::shared_ptr<Recording> recording, const EngineBackend::StreamFacts& track);

    std::int32_t kind() const override;
    std::string format() const override;
    std::int32_t typeCode() const override;
    unsigned int width() const override { return static_cast<unsigned int>(displaySize().width); }
    unsigned int height() const override { return static_cast<unsigned int>(displaySize().height); }
    bool decodeFrameAtTime(double seconds, unsigned char* buffer, unsigned int size,
                           double* actualTime) override;

private:
    EngineBackend::PictureSize displaySize() const;
    bool decodeInto(double seconds, unsigned char* buffer, std::size_t bytes, double* actualTime);
    EngineBackend::IVideoReader* reader();

    std::shared_ptr<Recording> recording; ///< until the reader is made
    EngineBackend::StreamFacts facts;
    std::unique_ptr<EngineBackend::IVideoReader> frames; ///< null before and where nothing can be decoded
};

} // namespace MOSK
