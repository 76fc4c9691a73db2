#include "FrameCodecLib/Decoder.h"

#include "engine/EngineModule.h"

#include <new>

namespace FrameCodecLib {

namespace {

Decoder* openDecoder(const std::string& fileName, int streamIndex, int decodersAtOnce) {
    const auto file = EngineBackend::openMediaFile(fileName);
    if (!file)
        return nullptr;
    const int stream = streamIndex == -1 ? (*file)->bestVideoStream() : streamIndex;
    auto reader = (*file)->readVideo(stream, {.readersAtOnce = decodersAtOnce});
    return reader ? new EngineDecoder(std::move(*reader)) : nullptr;
}

class EngineDecoderFactory : public DecoderFactory {
public:
    Decoder* CreateDecoder(const std::string& fileName, int streamIndex, int decodersAtOnce) override {
        if (streamIndex < -1 || decodersAtOnce < 1)
            return nullptr;
        try {
            return openDecoder(fileName, streamIndex, decodersAtOnce);
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }
};

} // namespace

DecoderFactory* DecoderFactory::Create() {
    return new EngineDecoderFactory;
}

} // namespace FrameCodecLib
