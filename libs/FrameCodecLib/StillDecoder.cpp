#include "FrameCodecLib/StillDecoder.h"

#include "platform/System.h"
#include "platform/UprightTurn.h"
#include "system/PixelBudget.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace FrameCodecLib {

namespace {

constexpr int bytesPerPixel = 4;

class StillBitmap : public Bitmap {
public:
    /// Throws std::bad_alloc.
    StillBitmap(int frameWidth, int frameHeight)
        : width(frameWidth)
        , height(frameHeight)
        , pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * bytesPerPixel) {}

    int GetWidth() const override { return width; }
    int GetHeight() const override { return height; }
    int GetStride() const override { return width * bytesPerPixel; }
    bool Lock() override {
        isLocked = true;
        return true;
    }
    unsigned char* GetPixels() override { return isLocked ? pixels.data() : nullptr; }
    void Unlock() override { isLocked = false; }

    unsigned char* memory() { return pixels.data(); }

private:
    int width;
    int height;
    std::vector<unsigned char> pixels;
    bool isLocked = false;
};

std::wstring wideOf(const std::string& text) {
    const int length = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0'); // never more than there are bytes
    const int used = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), length);
    wide.resize(static_cast<std::size_t>(used));
    return wide;
}

bool isGif(Gdiplus::Bitmap& picture) {
    GUID format{};
    return picture.GetRawFormat(&format) == Gdiplus::Ok && format == Gdiplus::ImageFormatGIF;
}

/// False where the file turns out to be damaged, which shows only when its pixels are decoded.
bool draw(Gdiplus::Bitmap& picture, StillBitmap& into) {
    Gdiplus::Bitmap target(into.GetWidth(), into.GetHeight(), into.GetStride(), PixelFormat32bppPARGB,
                           into.memory());
    Gdiplus::Graphics graphics(&target);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.DrawImage(&picture, Gdiplus::Rect(0, 0, into.GetWidth(), into.GetHeight()), 0, 0,
                       static_cast<int>(picture.GetWidth()), static_cast<int>(picture.GetHeight()),
                       Gdiplus::UnitPixel);
    return picture.ForceValidation() == Gdiplus::Ok && graphics.GetLastStatus() == Gdiplus::Ok;
}

} // namespace

std::unique_ptr<StillDecoder> StillDecoder::open(const std::string& fileName) {
    auto picture =
        std::make_unique<Gdiplus::Bitmap>(wideOf(fileName).c_str(), /*useEmbeddedColorManagement=*/TRUE);
    if (picture->GetLastStatus() != Gdiplus::Ok || isGif(*picture))
        return nullptr;
    (void)picture->RotateFlip(Gdiplus::UprightTurnOf(*picture)); // what can't be turned is shown as it lies
    return std::unique_ptr<StillDecoder>(new StillDecoder(std::move(picture)));
}

StillDecoder::StillDecoder(std::unique_ptr<Gdiplus::Bitmap> upright)
    : picture(std::move(upright))
    , width(static_cast<int>(picture->GetWidth()))
    , height(static_cast<int>(picture->GetHeight())) {}

Bitmap* StillDecoder::GetFrameAtTime(boost::rational<__int64>, FrameTiming& timing, int flags) {
    if (flags != 0)
        return nullptr;
    try {
        auto frame = wantedWidth > 0 ? std::make_unique<StillBitmap>(wantedWidth, wantedHeight)
                                     : std::make_unique<StillBitmap>(width, height);
        if (!draw(*picture, *frame))
            return nullptr;
        timing = {.start = 0, .end = 0, .isKeyFrame = true};
        return frame.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool StillDecoder::SetOutputSize(int outputWidth, int outputHeight) {
    const bool isDisplaySize = outputWidth == 0 && outputHeight == 0;
    if (!isDisplaySize && (outputWidth < 1 || outputHeight < 1 ||
                           std::int64_t{outputWidth} * outputHeight > SystemBackend::pixelBudget()))
        return false;
    wantedWidth = outputWidth;
    wantedHeight = outputHeight;
    return true;
}

} // namespace FrameCodecLib
