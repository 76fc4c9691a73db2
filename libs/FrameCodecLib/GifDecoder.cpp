#include "FrameCodecLib/GifDecoder.h"

#include "FrameCodecLib/FileName.h"

#include <new>
#include <utility>

namespace FrameCodecLib {

namespace {

/// A frame of the loader's, which shares its pixels with others.
class GifFrame : public Bitmap {
public:
    explicit GifFrame(boost::shared_ptr<Bitmap> loaded)
        : frame(std::move(loaded)) {}

    int GetWidth() const override { return frame->GetWidth(); }
    int GetHeight() const override { return frame->GetHeight(); }
    int GetStride() const override { return frame->GetStride(); }
    bool Lock() override { return frame->Lock(); }
    unsigned char* GetPixels() override { return frame->GetPixels(); }
    void Unlock() override { frame->Unlock(); }

private:
    boost::shared_ptr<Bitmap> frame;
};

bool isGdiplusStarted() {
    return Gdiplus::Bitmap(1, 1, PixelFormat32bppPARGB).GetLastStatus() == Gdiplus::Ok;
}

} // namespace

std::unique_ptr<GifDecoder> GifDecoder::open(const std::string& fileName) {
    if (!isGdiplusStarted())
        return nullptr;
    std::unique_ptr<GifDecoder> decoder(new GifDecoder(wideOf(fileName)));
    return decoder->gif.valid ? std::move(decoder) : nullptr;
}

Bitmap* GifDecoder::GetFrameAtTime(boost::rational<__int64> time, FrameTiming& timing, int flags) {
    if (flags != 0)
        return nullptr;
    try {
        const int index = indexAt(time);
        auto frame = frameAt(index);
        if (frame)
            timing = gif.GetFrameTiming(index);
        return frame.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

boost::rational<__int64> GifDecoder::GetFrameRate() const {
    return boost::rational<__int64>(gif.GetFrameCount()) / gif.GetDuration();
}

/// Exactly, where the loader's own time is a double and goes on with the next pass.
int GifDecoder::indexAt(boost::rational<__int64> time) const {
    int first = 0;
    int last = gif.GetFrameCount() - 1;
    while (first < last) {
        const int middle = first + (last - first) / 2;
        if (gif.GetFrameTiming(middle).end <= time)
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

std::unique_ptr<Bitmap> GifDecoder::frameAt(int index) {
    const boost::shared_ptr<Bitmap> whole = gif.GetFrameAtIndex(index);
    if (!whole)
        return nullptr;
    const int width = outputSize.widthOr(whole->GetWidth());
    const int height = outputSize.heightOr(whole->GetHeight());
    if (width == whole->GetWidth() && height == whole->GetHeight())
        return std::make_unique<GifFrame>(whole);
    whole->Lock();
    Gdiplus::Bitmap picture(whole->GetWidth(), whole->GetHeight(), whole->GetStride(), PixelFormat32bppPARGB,
                            whole->GetPixels());
    return DrawnBitmap::draw(picture, width, height);
}

} // namespace FrameCodecLib
