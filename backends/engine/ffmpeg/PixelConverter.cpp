#include "engine/ffmpeg/PixelConverter.h"

#include "engine/ffmpeg/ColorDescription.h"
#include "engine/ffmpeg/PixelBudget.h"
#include "engine/ffmpeg/TurnPixels.h"
#include "engine/ffmpeg/UnscaledColors.h"

#include "system/PixelBudget.h"

#include <fmt/format.h>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <new>
#include <span>
#include <utility>

namespace EngineBackend {

namespace {

constexpr int quality = SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP;

/// The scaler may write some bytes beyond the last row.
constexpr std::size_t slack = 64;

constexpr int bytesPerPixel = 4;
constexpr int bytesPerHdrPixel = 6;

std::size_t pixelCount(PictureSize size) {
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

/// Null without memory.
std::unique_ptr<std::uint8_t[]> makePixels(PictureSize size) {
    return std::unique_ptr<std::uint8_t[]>(new (std::nothrow)
                                               std::uint8_t[pixelCount(size) * bytesPerPixel + slack]);
}

tl::unexpected<Error> noMemoryFor(PictureSize size) {
    return failure(ErrorKind::TooLarge,
                   fmt::format("no memory for a picture of {} x {} pixels", size.width, size.height));
}

std::uint8_t scaled(unsigned value, unsigned alpha) {
    const unsigned product = value * alpha + 128;
    return static_cast<std::uint8_t>((product + (product >> 8U)) >> 8U);
}

void premultiply(std::span<std::uint8_t> pixels) {
    for (std::size_t i = 0; i < pixels.size(); i += bytesPerPixel) {
        const unsigned alpha = pixels[i + 3];
        for (std::size_t channel = 0; channel < 3; ++channel)
            pixels[i + channel] = scaled(pixels[i + channel], alpha);
    }
}

std::span<std::uint32_t> asPixels(std::uint8_t* bytes, PictureSize size) {
    return {reinterpret_cast<std::uint32_t*>(bytes), pixelCount(size)};
}

} // namespace

Result<std::shared_ptr<const Picture>> PixelConverter::convert(const AVFrame& frame, PictureSize size,
                                                               const Orientation& orientation) {
    if (!isWithinPixelBudget(size))
        return failure(ErrorKind::TooLarge,
                       fmt::format("{} x {} pixels are more than the budget of {}", size.width, size.height,
                                   SystemBackend::pixelBudget()));
    auto picture = std::make_shared<Picture>();
    picture->size = size;
    picture->pixels = makePixels(size);
    if (!picture->pixels)
        return noMemoryFor(size);
    if (orientation == Orientation{}) {
        if (auto done = scale(frame, size, picture->pixels.get()); !done)
            return tl::unexpected(done.error());
        return picture;
    }
    const PictureSize lying = orientation.swapsAxes() ? PictureSize{size.height, size.width} : size;
    const auto unturned = makePixels(lying);
    if (!unturned)
        return noMemoryFor(size);
    if (auto done = scale(frame, lying, unturned.get()); !done)
        return tl::unexpected(done.error());
    turnPixels(asPixels(unturned.get(), lying), lying, orientation, asPixels(picture->pixels.get(), size));
    return picture;
}

Result<void> PixelConverter::scale(const AVFrame& frame, PictureSize size, std::uint8_t* pixels) {
    if (hasAlpha(frame))
        return scaleTransparent(frame, size, pixels);
    if (const auto hdr = describeHdr(frame))
        return scaleHdr(frame, size, *hdr, pixels);
    return scaleInto(frame, size, AV_PIX_FMT_BGRA, pixels);
}

Result<void> PixelConverter::scaleInto(const AVFrame& frame, PictureSize size, int format,
                                       std::uint8_t* pixels) {
    const ColorDescription colors = describeColors(frame);
    const bool isOwnSize = size == PictureSize{frame.width, frame.height};
    if (isOwnSize && format == AV_PIX_FMT_BGRA && canConvertUnscaled(frame, colors)) {
        convertUnscaled(frame, colors, pixels);
        return {};
    }
    const AVFrame& source = averaged.reduced(frame, size);
    fromFrame.reset(sws_getCachedContext(
        fromFrame.release(), source.width, source.height, static_cast<AVPixelFormat>(colors.format),
        size.width, size.height, static_cast<AVPixelFormat>(format), quality, nullptr, nullptr, nullptr));
    if (!fromFrame)
        return failure(ErrorKind::Unsupported,
                       fmt::format("frames of {} x {} pixels in format {} can't be converted", source.width,
                                   source.height, colors.format));
    // Formats that are RGB already have no matrix and refuse one.
    (void)sws_setColorspaceDetails(fromFrame.get(), sws_getCoefficients(colors.matrix),
                                   colors.isFullRange ? 1 : 0, sws_getCoefficients(SWS_CS_DEFAULT), 1, 0,
                                   1 << 16, 1 << 16);
    const int bytes = format == AV_PIX_FMT_BGRA ? bytesPerPixel : bytesPerHdrPixel;
    std::uint8_t* const planes[4] = {pixels, nullptr, nullptr, nullptr};
    const int strides[4] = {size.width * bytes, 0, 0, 0};
    if (sws_scale(fromFrame.get(), source.data, source.linesize, 0, source.height, planes, strides) < 0)
        return failure(ErrorKind::Damaged, "a frame can't be converted");
    return {};
}

Result<void> PixelConverter::scaleHdr(const AVFrame& frame, PictureSize size, const HdrDescription& hdr,
                                      std::uint8_t* pixels) {
    hdrPixels.resize(pixelCount(size) * 3 + slack);
    auto done = scaleInto(frame, size, AV_PIX_FMT_RGB48, reinterpret_cast<std::uint8_t*>(hdrPixels.data()));
    if (!done)
        return done;
    if (!toneMapper || toneMapper->description() != hdr)
        toneMapper = std::make_unique<ToneMapper>(hdr);
    toneMapper->map({hdrPixels.data(), pixelCount(size) * 3}, {pixels, pixelCount(size) * bytesPerPixel});
    return {};
}

Result<void> PixelConverter::scaleTransparent(const AVFrame& frame, PictureSize size, std::uint8_t* pixels) {
    const PictureSize own = {frame.width, frame.height};
    const bool isSameSize = own == size;
    const auto whole = isSameSize ? nullptr : makePixels(own);
    if (!isSameSize && !whole)
        return noMemoryFor(own);
    std::uint8_t* const unscaled = isSameSize ? pixels : whole.get();
    if (auto done = scaleInto(frame, own, AV_PIX_FMT_BGRA, unscaled); !done)
        return done;
    premultiply({unscaled, pixelCount(own) * bytesPerPixel});
    if (isSameSize)
        return {};
    fromTransparent.reset(sws_getCachedContext(fromTransparent.release(), own.width, own.height,
                                               AV_PIX_FMT_BGRA, size.width, size.height, AV_PIX_FMT_BGRA,
                                               quality, nullptr, nullptr, nullptr));
    if (!fromTransparent)
        return noMemoryFor(size);
    const std::uint8_t* const from[4] = {unscaled, nullptr, nullptr, nullptr};
    const int fromStrides[4] = {own.width * bytesPerPixel, 0, 0, 0};
    std::uint8_t* const to[4] = {pixels, nullptr, nullptr, nullptr};
    const int toStrides[4] = {size.width * bytesPerPixel, 0, 0, 0};
    if (sws_scale(fromTransparent.get(), from, fromStrides, 0, own.height, to, toStrides) < 0)
        return failure(ErrorKind::Damaged, "a frame can't be scaled");
    return {};
}

} // namespace EngineBackend
