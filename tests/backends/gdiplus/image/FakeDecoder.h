#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/image/PictureRows.h"

#include <functional>
#include <utility>
#include <vector>

namespace GdiplusBackend {

/// A picture that is made up instead of read from a file.
struct FakePicture {
    int width = 0;
    int height = 0;
    RowLayout layout = RowLayout::Bgra32;
    /// 0xAARRGGBB, 0xCCMMYYKK for inks, or an index into `palette`.
    std::function<std::uint32_t(int x, int y)> pixelAt;
    std::vector<Gdiplus::ARGB> palette = {};

    std::vector<std::byte> row(int y) const {
        const int bits = bitsPerPixel(layout);
        std::vector<std::byte> bytes((static_cast<std::size_t>(width * bits) + 7) / 8);
        for (int x = 0; x < width; ++x) {
            const std::uint32_t pixel = pixelAt(x, y);
            std::byte* first = bytes.data() + x * bits / 8;
            if (bits <= 8)
                *first |= static_cast<std::byte>(pixel << (8 - bits - x * bits % 8));
            else
                for (int i = 0; i < bits / 8; ++i)
                    first[i] =
                        static_cast<std::byte>(pixel >> (layout == RowLayout::Cmyk32 ? 24 - 8 * i : 8 * i));
        }
        return bytes;
    }

    /// The colour that a pixel shows without colour management, not premultiplied.
    Gdiplus::ARGB colorAt(int x, int y) const {
        const std::uint32_t pixel = pixelAt(x, y);
        switch (layout) {
        case RowLayout::Bits1:
        case RowLayout::Bits4:
        case RowLayout::Index8:
            return palette.at(pixel);
        case RowLayout::Bgr24:
        case RowLayout::Bgrx32:
            return pixel | 0xFF000000;
        case RowLayout::Bgra32:
            return pixel;
        case RowLayout::Cmyk32:
            break;
        }
        const auto light = [&](int shift) {
            const double paper = (255.0 - (pixel & 255)) / 255;
            return static_cast<Gdiplus::ARGB>((255 - (pixel >> shift & 255)) * paper + 0.5);
        };
        return 0xFF000000 | light(24) << 16 | light(16) << 8 | light(8);
    }
};

class FakeDecoder : public PictureDecoder {
public:
    explicit FakeDecoder(FakePicture shown, PictureFacts facts = {})
        : PictureDecoder(complete(shown, std::move(facts)))
        , picture(std::move(shown)) {}

    /// Gives the pixels at every so manieth place for a reduction.
    Result<void> decode(int reduction, RowSink& sink) const override {
        const FakePicture& full = picture;
        const FakePicture reduced = {
            reducedLength(full.width, reduction), reducedLength(full.height, reduction), full.layout,
            [&](int x, int y) { return full.pixelAt(x * reduction, y * reduction); }};
        for (int y = 0; y < reduced.height; ++y)
            sink.putRow(reduced.row(y));
        return {};
    }

private:
    static PictureFacts complete(const FakePicture& shown, PictureFacts facts) {
        facts.width = shown.width;
        facts.height = shown.height;
        facts.layout = shown.layout;
        facts.palette = shown.palette;
        return facts;
    }

    FakePicture picture;
};

} // namespace GdiplusBackend
