#include "video/GifFrame.h"

#include "Paths.h"

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/platform/AnimatedGif.h>

#include <algorithm>

namespace KestoHost {

namespace {

using FrameCodecLib::WICAnimatedGIFLoader;

/// As the library chooses: at 0 it shows the second frame.
int shownIndex(WICAnimatedGIFLoader& gif, double seconds) {
    return seconds == 0 ? std::min(1, gif.GetFrameCount() - 1) : gif.GetFrameIndexAtTime(seconds);
}

} // namespace

bool isAnimatedGif(const std::string& input) {
    WICAnimatedGIFLoader gif(*wideFromUtf8(input));
    return gif.GetFrameTiming(1).start.numerator() > 0; // of the last frame, if there is no second
}

GifThumbnail gifThumbnail(const std::string& input, double seconds, const Bounds& bounds) {
    const std::wstring path = *wideFromUtf8(input);
    GifThumbnail made;
    made.bitmap.reset(KestoThumbnailer::GdiplusBitmapThumbnailingHelper::GetThumbnailForAnimatedGIF(
        path, seconds, bounds.width, bounds.height));
    WICAnimatedGIFLoader gif(path);
    if (!made.bitmap || !gif.valid)
        return {};
    const int index = shownIndex(gif, seconds);
    made.told = {boost::rational_cast<double>(gif.GetFrameTiming(index).start), index};
    return made;
}

} // namespace KestoHost
