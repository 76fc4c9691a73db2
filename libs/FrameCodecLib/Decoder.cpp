#include "FrameCodecLib/Decoder.h"

namespace FrameCodecLib {

namespace {

/// Shares a picture of the engine.
class EngineBitmap : public Bitmap {
public:
    explicit EngineBitmap(std::shared_ptr<const EngineBackend::Picture> shared)
        : picture(std::move(shared)) {}

    int GetWidth() const override { return picture->size.width; }
    int GetHeight() const override { return picture->size.height; }
    int GetStride() const override { return picture->stride(); }
    bool Lock() override {
        isLocked = true;
        return true;
    }
    unsigned char* GetPixels() override { return isLocked ? picture->pixels.get() : nullptr; }
    void Unlock() override { isLocked = false; }

private:
    std::shared_ptr<const EngineBackend::Picture> picture;
    bool isLocked = false;
};

} // namespace

Bitmap* EngineDecoder::GetFrameAtTime(boost::rational<__int64> time, FrameTiming& timing, int flags) {
    if (flags != 0)
        return nullptr;
    const auto found = reader->pictureAt(time, outputSize);
    if (!found)
        return nullptr;
    auto frame = std::make_unique<EngineBitmap>(found->picture);
    timing = {found->timing.start, found->timing.end, found->timing.isKeyFrame};
    return frame.release();
}

bool EngineDecoder::SetOutputSize(int width, int height) {
    if (!reader->canScaleTo({width, height}))
        return false;
    outputSize = {width, height};
    return true;
}

} // namespace FrameCodecLib
