#include "FrameCodecLib/StillDecoder.h"

#include "FrameCodecLib/FileName.h"

#include "platform/UprightTurn.h"

#include <new>

namespace FrameCodecLib {

namespace {

bool isGif(Gdiplus::Bitmap& picture) {
    GUID format{};
    return picture.GetRawFormat(&format) == Gdiplus::Ok && format == Gdiplus::ImageFormatGIF;
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
        auto frame = DrawnBitmap::draw(*picture, outputSize.widthOr(width), outputSize.heightOr(height));
        if (!frame)
            return nullptr;
        timing = {.start = 0, .end = 0, .isKeyFrame = true};
        return frame.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace FrameCodecLib
