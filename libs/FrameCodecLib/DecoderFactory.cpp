#include "FrameCodecLib/Decoder.h"
#include "FrameCodecLib/GifDecoder.h"
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

/// Of what has one stream and needs no engine; null for anything else.
std::unique_ptr<Decoder> openPicture(const std::string& fileName, int streamIndex) {
    if (streamIndex > 0)
        return nullptr;
    if (auto still = StillDecoder::open(fileName))
        return still;
    return GifDecoder::open(fileName);
}

/// Pictures first: for them the engine need not be loaded.
class AnyDecoderFactory : public DecoderFactory {
public:
    Decoder* CreateDecoder(const std::string& fileName, int streamIndex, int decodersAtOnce) override {
        if (streamIndex < -1 || decodersAtOnce < 1)
            return nullptr;
        try {
            if (auto picture = openPicture(fileName, streamIndex))
                return picture.release();
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
