#include "FrameCodecLib/Decoder.h"

#include "engine/EngineModule.h"

namespace FrameCodecLib {

namespace {

class EngineDecoderFactory : public DecoderFactory {
public:
    Decoder* CreateDecoder(const std::string& fileName, int streamIndex, int decodersAtOnce) override {
        if (streamIndex < -1 || decodersAtOnce < 1)
            return nullptr;
        const auto file = EngineBackend::openMediaFile(fileName);
        if (!file)
            return nullptr;
        const int stream = streamIndex == -1 ? (*file)->bestVideoStream() : streamIndex;
        auto reader = (*file)->readVideo(stream, {.readersAtOnce = decodersAtOnce});
        return reader ? new EngineDecoder(std::move(*reader)) : nullptr;
    }
};

} // namespace

DecoderFactory* DecoderFactory::Create() {
    return new EngineDecoderFactory;
}

} // namespace FrameCodecLib
