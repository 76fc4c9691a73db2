#pragma once

#include "FrameCodecLib/DrawnBitmap.h"

#include "platform/AnimatedGif.h"

#include <memory>
#include <string>

namespace FrameCodecLib {

/// One pass of a GIF file, with the frames of `WICAnimatedGIFLoader`.
class GifDecoder : public Decoder {
public:
    /// Null for what is no GIF with a frame, and where GDI+ is not started, which scales the frames.
    static std::unique_ptr<GifDecoder> open(const std::string& fileName);

    Bitmap* GetFrameAtTime(boost::rational<__int64> time, FrameTiming& timing, int flags) override;
    int GetDisplayWidth() const override { return gif.GetWidth(); }
    int GetDisplayHeight() const override { return gif.GetHeight(); }
    boost::rational<__int64> GetDuration() const override { return gif.GetDuration(); }
    boost::rational<__int64> GetFrameRate() const override;
    bool SetOutputSize(int width, int height) override { return outputSize.set(width, height); }

private:
    explicit GifDecoder(const std::wstring& path)
        : gif(path) {}

    int indexAt(boost::rational<__int64> time) const;
    std::unique_ptr<Bitmap> frameAt(int index);

    mutable WICAnimatedGIFLoader gif; // reads on in the file when it is asked for the whole of it
    OutputSize outputSize;
};

} // namespace FrameCodecLib
