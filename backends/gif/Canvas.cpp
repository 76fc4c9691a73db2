#include "gif/Canvas.h"

namespace GifBackend {

namespace {

std::uint32_t* pixelAt(Picture& picture, int x, int y) {
    return picture.pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
           static_cast<std::size_t>(x);
}

/// Draws one line after the other, each one at its place.
class LineDrawer {
public:
    LineDrawer(Picture& target, const Frame& source, std::span<const std::uint8_t> indices,
               const Colours& palette)
        : picture(target)
        , frame(source)
        , unread(indices)
        , colours(palette)
        , visible(visibleBox(source, target.width, target.height)) {}

    void drawPass(const InterlacePass& pass) {
        for (int line = pass.first; line < frame.height && !unread.empty(); line += pass.step) {
            const std::size_t count = std::min(unread.size(), static_cast<std::size_t>(frame.width));
            const int y = frame.top + line;
            if (y < visible.bottom)
                drawLine(unread.first(count), y);
            unread = unread.subspan(count);
        }
    }

private:
    void drawLine(std::span<const std::uint8_t> line, int y) {
        const std::size_t count =
            std::min(line.size(), static_cast<std::size_t>(visible.right - visible.left));
        std::uint32_t* out = pixelAt(picture, visible.left, y);
        for (std::size_t x = 0; x < count; ++x) {
            const std::uint32_t colour = colours[line[x]];
            out[x] = colour != 0 ? colour : out[x];
        }
    }

    Picture& picture;
    const Frame& frame;
    std::span<const std::uint8_t> unread;
    const Colours& colours;
    Box visible;
};

} // namespace

Box visibleBox(const Frame& frame, int screenWidth, int screenHeight) {
    return {frame.left, frame.top, std::min(frame.left + frame.width, screenWidth),
            std::min(frame.top + frame.height, screenHeight)};
}

std::size_t indicesNeeded(const Frame& frame, const Box& visible) {
    if (visible.isEmpty())
        return 0;
    const int lines = frame.interlaced ? frame.height : visible.bottom - visible.top;
    return static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(lines);
}

Colours coloursOf(const Palette& palette, std::optional<std::uint8_t> transparentIndex) {
    Colours colours = {};
    if (palette.empty())
        return colours;
    colours.fill(palette.front());
    std::copy_n(palette.begin(), std::min(palette.size(), colours.size()), colours.begin());
    if (transparentIndex)
        colours[*transparentIndex] = 0;
    return colours;
}

void drawFrame(Picture& picture, const Frame& frame, std::span<const std::uint8_t> indices,
               const Colours& colours) {
    if (visibleBox(frame, picture.width, picture.height).isEmpty())
        return;
    LineDrawer drawer(picture, frame, indices, colours);
    if (!frame.interlaced) {
        drawer.drawPass({0, 1});
        return;
    }
    for (const InterlacePass& pass : interlacePasses)
        drawer.drawPass(pass);
}

void clearBox(Picture& picture, const Box& box) {
    if (box.isEmpty())
        return;
    for (int y = box.top; y < box.bottom; ++y)
        std::fill_n(pixelAt(picture, box.left, y), box.right - box.left, 0U);
}

} // namespace GifBackend
