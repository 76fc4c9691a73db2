#include "video/VideoFrames.h"

#include "video/MovingInput.h"

#include <KestoThumbnailer/platform/KestoMediaTime.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace KestoHost {

namespace {

using KestoMediaLib::modelTimePerSecond;
using KestoRenderLib::MetaBitmap;
using KestoRenderLib::Size;

/// As long as the renderer takes such a file to be.
constexpr ModelTime unknownDuration = ModelTime{24} * 3600 * modelTimePerSecond;

/// The library's thumbnails have truncated lengths within one bound, by single precision, and rounded ones
/// within two.
int truncatedShare(int length, int other, int bound) {
    return static_cast<int>(static_cast<float>(length) / static_cast<float>(other) *
                            static_cast<float>(bound));
}

int roundedShare(int length, int other, int bound) {
    return static_cast<int>(std::lround(static_cast<double>(bound) * length / other));
}

Size fittedByHeight(const Size& picture, const Bounds& bounds) {
    const int width = bounds.width == 0 ? truncatedShare(picture.width, picture.height, bounds.height)
                                        : roundedShare(picture.width, picture.height, bounds.height);
    return {std::max(width, 1), bounds.height};
}

Size fittedByWidth(const Size& picture, const Bounds& bounds) {
    const int height = bounds.height == 0 ? truncatedShare(picture.height, picture.width, bounds.width)
                                          : roundedShare(picture.height, picture.width, bounds.width);
    return {bounds.width, std::max(height, 1)};
}

bool exceeds(int length, int bound) {
    return bound > 0 && length > bound;
}

/// A frame over the pixels of a decoded one, which stays locked as long as it is looked at.
boost::shared_ptr<MetaBitmap> readable(std::unique_ptr<FrameCodecLib::Bitmap> decoded) {
    if (!decoded || !decoded->Lock() || !decoded->GetPixels())
        return {};
    const boost::shared_ptr<FrameCodecLib::Bitmap> owner(decoded.release(),
                                                         [](FrameCodecLib::Bitmap* bitmap) {
                                                             bitmap->Unlock();
                                                             delete bitmap;
                                                         });
    return {new MetaBitmap({owner->GetWidth(), owner->GetHeight()}, owner->GetStride(),
                           KestoRenderLib::PixelFormat::Premultiplied32, owner->GetPixels(),
                           /*takeOwnership=*/false),
            [owner](const MetaBitmap* frame) { delete frame; }};
}

} // namespace

Size thumbnailSizeOf(const Size& picture, const Bounds& bounds) {
    const bool isTooWide = exceeds(picture.width, bounds.width);
    const bool isTooHigh = exceeds(picture.height, bounds.height);
    if (!isTooWide && !isTooHigh)
        return picture;
    const bool isWider =
        std::int64_t{picture.width} * bounds.height > std::int64_t{picture.height} * bounds.width;
    const bool widthDecides = bounds.height == 0 || (bounds.width > 0 && isWider);
    return widthDecides ? fittedByWidth(picture, bounds) : fittedByHeight(picture, bounds);
}

VideoFrames::Opened VideoFrames::open(const std::string& input, int stream) {
    if (const auto refusal = refusalOfCompoundFile(input))
        return {nullptr, *refusal};
    const std::unique_ptr<FrameCodecLib::DecoderFactory> factory(FrameCodecLib::DecoderFactory::Create());
    std::unique_ptr<FrameCodecLib::Decoder> decoder(
        factory->CreateDecoder(input, stream, /*decodersAtOnce=*/1));
    if (!decoder)
        return {nullptr, whyNoVideo(input, stream)};
    return {std::unique_ptr<VideoFrames>(new VideoFrames(std::move(decoder))), {}};
}

ModelTime VideoFrames::duration() const {
    const boost::rational<__int64> seconds = decoder->GetDuration();
    return seconds.numerator() > 0
               ? KestoMediaLib::RationalUtil::toKestoTime(KestoMediaLib::SafeRational(seconds))
               : unknownDuration;
}

Size VideoFrames::size() const {
    return {decoder->GetDisplayWidth(), decoder->GetDisplayHeight()};
}

VideoFrames::Frame VideoFrames::frameAt(ModelTime time, const Size& wanted) {
    Frame frame;
    if (!decoder->SetOutputSize(wanted.width, wanted.height))
        return frame;
    frame.bitmap = readable(std::unique_ptr<FrameCodecLib::Bitmap>(
        decoder->GetFrameAtTime({time, modelTimePerSecond}, frame.timing, 0)));
    return frame;
}

} // namespace KestoHost
