#include "FrameCodecLib/Decoder.h"
#include "FrameCodecLib/StillDecoder.h"

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

bool isFirstStream(int streamIndex) {
    return streamIndex < 1;
}

/// Pictures first: for them the engine need not be loaded.
class AnyDecoderFactory : public DecoderFactory {
public:
    Decoder* CreateDecoder(const std::string& fileName, int streamIndex, int decodersAtOnce) override {
        if (streamIndex < -1 || decodersAtOnce < 1)
            return nullptr;
        try {
            if (auto still = isFirstStream(streamIndex) ? StillDecoder::open(fileName) : nullptr)
                return still.release();
            return openDecoder(fileName, streamIndex, decodersAtOnce);
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }
};

} // namespace

DecoderFactory* DecoderFactory::Create() {
    return new AnyDecoderFactory;
}

} // namespace FrameCodecLib
