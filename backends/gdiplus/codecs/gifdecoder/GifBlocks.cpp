#include "gdiplus/codecs/gifdecoder/GifBlocks.h"

#include "gif/FrameWalker.h"

namespace GdiplusBackend {

namespace {

class SourceBytes : public GifBackend::IBytes {
public:
    explicit SourceBytes(const ByteSource& bytes)
        : source(bytes) {}

    std::size_t read(std::uint64_t place, std::span<std::byte> out) override {
        return source.read(place, out);
    }

private:
    const ByteSource& source;
};

tl::unexpected<LoadError> refusal(const GifBackend::Error& error) {
    return error.fault == GifBackend::Fault::Truncated ? truncated(error.message) : damaged(error.message);
}

GifFrame frameOf(const GifBackend::Frame& frame, GifBackend::Palette palette) {
    return {.left = frame.left,
            .top = frame.top,
            .width = frame.width,
            .height = frame.height,
            .interlaced = frame.interlaced,
            .palette = std::move(palette),
            .transparentIndex = frame.transparentIndex};
}

} // namespace

Result<GifHeader> readGifHeader(const ByteSource& source) {
    SourceBytes bytes(source);
    GifBackend::FrameWalker walker(bytes);
    auto screen = walker.readScreen();
    if (!screen)
        return refusal(screen.error());
    const auto first = walker.next();
    if (!first)
        return refusal(first.error());
    if (!*first)
        return damaged("a GIF file without a frame");
    const auto second = walker.next();
    if (!second)
        return refusal(second.error());
    const GifBackend::Frame& frame = **first;
    if (screen->width == 0 || screen->height == 0) {
        screen->width = frame.left + frame.width;
        screen->height = frame.top + frame.height;
    }
    auto palette = frame.localColours > 0
                       ? GifBackend::readPaletteAt(bytes, frame.palettePlace, frame.localColours)
                       : std::move(screen->palette);
    return GifHeader{.screenWidth = screen->width,
                     .screenHeight = screen->height,
                     .firstFrame = frameOf(frame, std::move(palette)),
                     .isAnimated = second->has_value()};
}

Result<void> checkGifTrailer(const ByteSource& source) {
    SourceBytes bytes(source);
    GifBackend::FrameWalker walker(bytes);
    if (const auto screen = walker.readScreen(); !screen)
        return refusal(screen.error());
    for (;;) {
        const auto frame = walker.next();
        if (!frame)
            return refusal(frame.error());
        if (!*frame)
            return {};
    }
}

} // namespace GdiplusBackend
