#pragma once

#include "platform/FrameCodecLib.h"

#include "engine/Engine.h"

#include <memory>

namespace FrameCodecLib {

/// A decoder over a reader of the engine.
class EngineDecoder : public Decoder {
public:
    explicit EngineDecoder(std::unique_ptr<EngineBackend::IVideoReader> opened)
        : reader(std::move(opened)) {}

    Bitmap* GetFrameAtTime(boost::rational<__int64> time, FrameTiming& timing, int flags) override;
    int GetDisplayWidth() const override { return video().displaySize.width; }
    int GetDisplayHeight() const override { return video().displaySize.height; }
    boost::rational<__int64> GetDuration() const override { return reader->facts().duration.value_or(0); }
    boost::rational<__int64> GetFrameRate() const override { return video().averageFrameRate; }
    bool SetOutputSize(int width, int height) override;

private:
    const EngineBackend::VideoFacts& video() const { return reader->facts().video; }

    std::unique_ptr<EngineBackend::IVideoReader> reader;
    EngineBackend::PictureSize outputSize;
};

} // namespace FrameCodecLib
