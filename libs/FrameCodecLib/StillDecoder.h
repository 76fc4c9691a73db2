#pragma once

#include "FrameCodecLib/DrawnBitmap.h"

#include <memory>
#include <string>

namespace FrameCodecLib {

/// A picture that does not move, as a stream of one frame that is shown at all times.
class StillDecoder : public Decoder {
public:
    /// Null for a file that is no picture of a known format, for GIFs, which may move, and where GDI+ is not
    /// started. Reads the header alone.
    static std::unique_ptr<StillDecoder> open(const std::string& fileName);

    Bitmap* GetFrameAtTime(boost::rational<__int64> time, FrameTiming& timing, int flags) override;
    int GetDisplayWidth() const override { return width; }
    int GetDisplayHeight() const override { return height; }
    boost::rational<__int64> GetDuration() const override { return 0; }
    boost::rational<__int64> GetFrameRate() const override { return 0; }
    bool SetOutputSize(int outputWidth, int outputHeight) override {
        return outputSize.set(outputWidth, outputHeight);
    }

private:
    explicit StillDecoder(std::unique_ptr<Gdiplus::Bitmap> upright);

    std::unique_ptr<Gdiplus::Bitmap> picture;
    int width;
    int height;
    OutputSize outputSize;
};

} // namespace FrameCodecLib
