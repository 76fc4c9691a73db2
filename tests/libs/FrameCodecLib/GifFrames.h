#pragma once

#include "platform/AnimatedGif.h"
#include "support/GifFile.h"
#include "support/TempFolder.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace FrameCodecLib {

/// The premultiplied pixels of a frame, row by row; empty for no frame.
inline std::vector<std::uint32_t> pixelsOf(const boost::shared_ptr<Bitmap>& frame) {
    std::vector<std::uint32_t> pixels;
    if (!frame || !frame->Lock())
        return pixels;
    for (int y = 0; y < frame->GetHeight(); ++y)
        for (int x = 0; x < frame->GetWidth(); ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, frame->GetPixels() + y * frame->GetStride() + x * 4, sizeof pixel);
            pixels.push_back(pixel);
        }
    frame->Unlock();
    return pixels;
}

/// One letter a pixel, row by row: ' ' where nothing is, else that of the colour; '?' for any other.
inline std::string lettersOf(const boost::shared_ptr<Bitmap>& frame) {
    std::string letters;
    for (const std::uint32_t pixel : pixelsOf(frame))
        switch (pixel) {
        case 0:
            letters += ' ';
            break;
        case 0xFF000000:
            letters += 'k';
            break;
        case 0xFFFF0000:
            letters += 'r';
            break;
        case 0xFF00FF00:
            letters += 'g';
            break;
        case 0xFF0000FF:
            letters += 'b';
            break;
        default:
            letters += '?';
        }
    return letters;
}

/// In the order of the letters above.
inline const TestSupport::GifColours fourColours = {0x000000, 0xFF0000, 0x00FF00, 0x0000FF};
enum : int { k, r, g, b };

inline TestSupport::GifFrame fullOf(int index, int width, int height) {
    return {.width = width, .height = height, .index = [index](int, int) { return index; }};
}

inline TestSupport::GifFrame lasting(int index, int delay) {
    TestSupport::GifFrame frame = fullOf(index, 1, 1);
    frame.delay = delay;
    return frame;
}

/// Red for 0.3 s, green for 0.2 s, blue for 0.5 s.
inline TestSupport::GifFile threeColours() {
    return TestSupport::GifFile(1, 1, fourColours)
        .frame(lasting(r, 30))
        .frame(lasting(g, 20))
        .frame(lasting(b, 50));
}

/// GIF files of a test.
class GifFolder {
public:
    std::unique_ptr<WICAnimatedGIFLoader> open(const std::vector<unsigned char>& bytes) const {
        return std::make_unique<WICAnimatedGIFLoader>(TestSupport::wideOf(folder.write("a.gif", bytes)));
    }
    std::unique_ptr<WICAnimatedGIFLoader> open(const TestSupport::GifFile& file) const {
        return open(file.bytes());
    }

    const TestSupport::TempFolder folder;
};

} // namespace FrameCodecLib
