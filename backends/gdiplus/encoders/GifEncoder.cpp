#include "gdiplus/encoders/GifEncoder.h"

#include "gdiplus/encoders/ColorQuantizer.h"
#include "gdiplus/encoders/PictureRows.h"
#include "gdiplus/encoders/SinkWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <numeric>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include <gif_lib.h>

namespace GdiplusBackend {

namespace {

constexpr int longestSide = 65535;

struct GifCloser {
    void operator()(GifFileType* gif) const { EGifCloseFile(gif, nullptr); }
};
using GifFile = std::unique_ptr<GifFileType, GifCloser>;

struct ColorMapFreer {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using ColorMap = std::unique_ptr<ColorMapObject, ColorMapFreer>;

int writeToSink(GifFileType* gif, const GifByteType* bytes, int count) {
    const std::span<const GifByteType> written(bytes, static_cast<std::size_t>(count));
    return static_cast<SinkWriter*>(gif->UserData)->write(std::as_bytes(written)) ? count : 0;
}

/// A power of two of entries, as the format wants it; the surplus is black.
ColorMap makeColorMap(std::span<const Gdiplus::ARGB> colours) {
    const int entries = static_cast<int>(std::bit_ceil(std::max(colours.size(), std::size_t{2})));
    ColorMap map(GifMakeMapObject(entries, nullptr));
    if (!map)
        throw std::bad_alloc();
    std::ranges::transform(colours, map->Colors, [](Gdiplus::ARGB colour) {
        return GifColorType{redOf(colour), greenOf(colour), blueOf(colour)};
    });
    return map;
}

bool putHeaders(GifFileType* gif, const ConstPixelView& picture, ColorMapObject* map,
                std::optional<std::uint8_t> transparent) {
    EGifSetGifVersion(gif, transparent.has_value());
    if (EGifPutScreenDesc(gif, picture.width, picture.height, 8, 0, map) != GIF_OK)
        return false;
    if (transparent) {
        const GraphicsControlBlock control{DISPOSAL_UNSPECIFIED, false, 0, *transparent};
        std::array<GifByteType, 4> bytes;
        EGifGCBToExtension(&control, bytes.data());
        if (EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(bytes.size()), bytes.data()) !=
            GIF_OK)
            return false;
    }
    return EGifPutImageDesc(gif, 0, 0, picture.width, picture.height, false, nullptr) == GIF_OK;
}

tl::unexpected<LoadError> failed(SinkWriter& writer, int error) {
    const char* reason = GifErrorString(error);
    return writer.failureOr(fmt::format("the GIF file can't be written: {}", reason ? reason : "no reason"));
}

/// `fillRow(y, row)` gives the indices of each row, from the top one on.
template <typename FillRow>
Result<void> writeGif(const ConstPixelView& picture, std::span<const Gdiplus::ARGB> colours,
                      std::optional<std::uint8_t> transparent, ByteSink& sink, FillRow fillRow) {
    SinkWriter writer(sink);
    const ColorMap map = makeColorMap(colours);
    std::vector<std::uint8_t> row(static_cast<std::size_t>(picture.width));
    int error = 0;
    GifFile gif(EGifOpen(&writer, writeToSink, &error));
    if (!gif)
        return failed(writer, error);
    if (!putHeaders(gif.get(), picture, map.get(), transparent))
        return failed(writer, gif->Error);
    for (int y = 0; y < picture.height; ++y) {
        fillRow(y, row);
        if (EGifPutLine(gif.get(), row.data(), picture.width) != GIF_OK)
            return failed(writer, gif->Error);
    }
    if (EGifCloseFile(gif.release(), &error) != GIF_OK)
        return failed(writer, error);
    return writer.finish();
}

Result<void> encodeIndexed(const ConstPixelView& picture, ByteSink& sink) {
    const PictureRows rows(picture);
    const std::span<const Gdiplus::ARGB> colours = rows.palette();
    const auto isTransparent = [&](std::size_t index) { return alphaOf(colours[index]) < 128; };

    std::array<std::uint8_t, 256> shownAs;
    std::iota(shownAs.begin(), shownAs.end(), std::uint8_t{0});
    std::optional<std::uint8_t> transparent;
    for (std::size_t index = 0; index < colours.size(); ++index) {
        if (!isTransparent(index))
            continue;
        transparent = transparent.value_or(static_cast<std::uint8_t>(index));
        shownAs[index] = *transparent;
    }
    return writeGif(picture, colours, transparent, sink, [&](int y, std::span<std::uint8_t> row) {
        rows.indices(y, row);
        for (std::uint8_t& index : row)
            index = shownAs[index];
    });
}

Result<void> encodeTrueColor(const ConstPixelView& picture, ByteSink& sink) {
    ColorQuantizer quantizer(picture);
    return writeGif(picture, quantizer.palette(), quantizer.transparentIndex(), sink,
                    [&](int, std::span<std::uint8_t> row) { quantizer.nextRow(row); });
}

} // namespace

Result<void> encodeGif(const ConstPixelView& picture, const EncodeOptions&, ByteSink& sink) {
    if (auto fit = checkPicture(picture, "GIF", longestSide); !fit)
        return fit;
    return IsIndexedPixelFormat(picture.format) ? encodeIndexed(picture, sink)
                                                : encodeTrueColor(picture, sink);
}

} // namespace GdiplusBackend
