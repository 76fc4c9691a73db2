#include "backends/gdiplus/codecs/GifBuilder.h"

#include <gif_lib.h>

#include <memory>
#include <stdexcept>

namespace GdiplusBackend {

namespace {

struct MapDeleter {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using ColourMap = std::unique_ptr<ColorMapObject, MapDeleter>;

void expect(int outcome) {
    if (outcome != GIF_OK)
        throw std::logic_error("the GIF file can't be written");
}

int append(GifFileType* gif, const GifByteType* bytes, int count) {
    const auto added = std::as_bytes(std::span(bytes, static_cast<std::size_t>(count)));
    auto* file = static_cast<Bytes*>(gif->UserData);
    file->insert(file->end(), added.begin(), added.end());
    return count;
}

ColourMap mapOf(const GifPalette& palette) {
    if (palette.empty())
        return nullptr;
    std::vector<GifColorType> colours;
    colours.reserve(palette.size());
    for (const auto& rgb : palette)
        colours.push_back({static_cast<GifByteType>(rgb[0]), static_cast<GifByteType>(rgb[1]),
                           static_cast<GifByteType>(rgb[2])});
    ColourMap map(GifMakeMapObject(static_cast<int>(colours.size()), colours.data()));
    if (!map)
        throw std::logic_error("a GIF palette needs a power of two of colours");
    return map;
}

void putLine(GifFileType* gif, const GifFrameSpec& spec, int y) {
    std::vector<GifPixelType> line;
    for (int x = 0; x < spec.width; ++x)
        line.push_back(static_cast<GifPixelType>(spec.index(x, y)));
    expect(EGifPutLine(gif, line.data(), spec.width));
}

void putFrame(GifFileType* gif, const GifFrameSpec& spec) {
    if (spec.transparentIndex) {
        const GraphicsControlBlock control = {DISPOSAL_UNSPECIFIED, false, 0, *spec.transparentIndex};
        std::array<GifByteType, 4> bytes = {};
        EGifGCBToExtension(&control, bytes.data());
        expect(EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(bytes.size()), bytes.data()));
    }
    expect(EGifPutImageDesc(gif, spec.left, spec.top, spec.width, spec.height, spec.interlaced,
                            mapOf(spec.palette).get()));
    const std::vector<std::array<int, 2>> passes =
        spec.interlaced ? std::vector<std::array<int, 2>>{{0, 8}, {4, 8}, {2, 4}, {1, 2}}
                        : std::vector<std::array<int, 2>>{{0, 1}};
    for (const auto& [first, step] : passes)
        for (int y = first; y < spec.height; y += step)
            putLine(gif, spec, y);
}

} // namespace

GifPalette gifColours(int count) {
    GifPalette palette;
    for (int i = 0; i < count; ++i)
        palette.push_back({i, 255 - i, i / 2});
    return palette;
}

GifBuilder::GifBuilder(int screenWidth, int screenHeight, GifPalette globalPalette)
    : width(screenWidth)
    , height(screenHeight)
    , palette(std::move(globalPalette)) {}

GifBuilder& GifBuilder::frame(GifFrameSpec spec) {
    frames.push_back(std::move(spec));
    return *this;
}

Bytes GifBuilder::build() const {
    Bytes file;
    int error = 0;
    GifFileType* gif = EGifOpen(&file, append, &error);
    if (!gif)
        throw std::logic_error("giflib can't write");
    EGifSetGifVersion(gif, true);
    expect(EGifPutScreenDesc(gif, width, height, 8, 0, mapOf(palette).get()));
    for (const GifFrameSpec& spec : frames)
        putFrame(gif, spec);
    expect(EGifCloseFile(gif, &error));
    return file;
}

} // namespace GdiplusBackend
