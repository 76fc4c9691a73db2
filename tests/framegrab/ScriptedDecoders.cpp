#include "framegrab/ScriptedDecoders.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace TestSupport {

namespace {

ScriptedDecoders* current = nullptr;

/// Rows with something behind them, as frames of a decoder may have. The pixels are wiped at its end.
class ScriptedFrame final : public FrameCodecLib::Bitmap {
public:
    explicit ScriptedFrame(KestoRenderLib::Size extent)
        : size(extent)
        , pixels(static_cast<std::size_t>(stride()) * static_cast<std::size_t>(extent.height), 0xCD) {
        ++current->living.frames;
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                const std::uint32_t value = ScriptedDecoders::pixelAt(x, y);
                std::memcpy(&pixels[static_cast<std::size_t>(y * stride() + x * 4)], &value, sizeof value);
            }
    }
    ~ScriptedFrame() override {
        std::fill(pixels.begin(), pixels.end(), 0xEE);
        --current->living.frames;
    }

    int GetWidth() const override { return size.width; }
    int GetHeight() const override { return size.height; }
    int GetStride() const override { return stride(); }
    bool Lock() override {
        if (current->canLock)
            ++current->living.locked;
        return current->canLock;
    }
    unsigned char* GetPixels() override {
        return current->living.locked > 0 && current->hasPixels ? pixels.data() : nullptr;
    }
    void Unlock() override { --current->living.locked; }

private:
    int stride() const { return size.width * 4 + 12; }

    KestoRenderLib::Size size;
    std::vector<unsigned char> pixels;
};

class ScriptedDecoder final : public FrameCodecLib::Decoder {
public:
    ScriptedDecoder() { ++current->living.decoders; }
    ~ScriptedDecoder() override { --current->living.decoders; }

    FrameCodecLib::Bitmap* GetFrameAtTime(boost::rational<__int64> time, FrameCodecLib::FrameTiming&,
                                          int flags) override {
        current->asked.push_back({time, flags});
        return current->hasFrames ? new ScriptedFrame(current->frameSize) : nullptr;
    }
    int GetDisplayWidth() const override { return current->frameSize.width; }
    int GetDisplayHeight() const override { return current->frameSize.height; }
    boost::rational<__int64> GetDuration() const override { return 0; }
    boost::rational<__int64> GetFrameRate() const override { return 0; }
    bool SetOutputSize(int, int) override { return false; }
};

class ScriptedFactory final : public FrameCodecLib::DecoderFactory {
public:
    ScriptedFactory() {
        if (current)
            ++current->living.factories;
    }
    ~ScriptedFactory() override {
        if (current)
            --current->living.factories;
    }

    FrameCodecLib::Decoder* CreateDecoder(const std::string& fileName, int streamIndex,
                                          int decodersAtOnce) override {
        if (!current)
            return nullptr;
        current->opened.push_back({fileName, streamIndex, decodersAtOnce, current->living.factories});
        return current->canOpen ? new ScriptedDecoder : nullptr;
    }
};

} // namespace

ScriptedDecoders::ScriptedDecoders() {
    current = this;
}

ScriptedDecoders::~ScriptedDecoders() {
    current = nullptr;
}

} // namespace TestSupport

// In the place of the decoding library.
FrameCodecLib::DecoderFactory* FrameCodecLib::DecoderFactory::Create() {
    return new TestSupport::ScriptedFactory;
}
