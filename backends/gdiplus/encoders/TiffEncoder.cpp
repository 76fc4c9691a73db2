#include "gdiplus/encoders/TiffEncoder.h"

#include "gdiplus/encoders/PictureRows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <vector>

#include <tiffio.h>

namespace GdiplusBackend {

namespace {

constexpr std::uint64_t mostFileBytes = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t stripBytes = std::size_t{1} << 16;

/// A file in memory that the library can move about in. `full` tells that it ran out of space.
struct MemoryFile {
    std::vector<std::byte> bytes;
    std::uint64_t place = 0;
    bool full = false;
};

MemoryFile& fileOf(thandle_t handle) {
    return *static_cast<MemoryFile*>(handle);
}

tmsize_t readMemory(thandle_t handle, void* out, tmsize_t count) {
    MemoryFile& file = fileOf(handle);
    const std::uint64_t place = std::min<std::uint64_t>(file.place, file.bytes.size());
    const auto left = std::span(file.bytes).subspan(place);
    const auto got = left.first(std::min(left.size(), static_cast<std::size_t>(count)));
    std::ranges::copy(got, static_cast<std::byte*>(out));
    file.place += got.size();
    return static_cast<tmsize_t>(got.size());
}

tmsize_t writeMemory(thandle_t handle, void* bytes, tmsize_t count) noexcept {
    MemoryFile& file = fileOf(handle);
    const std::span<const std::byte> written(static_cast<const std::byte*>(bytes),
                                             static_cast<std::size_t>(count));
    const std::uint64_t end = file.place + written.size();
    if (end > mostFileBytes)
        return 0;
    try {
        if (end > file.bytes.size())
            file.bytes.resize(end);
    } catch (const std::bad_alloc&) {
        file.full = true;
        return 0;
    }
    std::ranges::copy(written, file.bytes.begin() + static_cast<std::ptrdiff_t>(file.place));
    file.place = end;
    return count;
}

toff_t seekMemory(thandle_t handle, toff_t offset, int origin) {
    MemoryFile& file = fileOf(handle);
    const std::uint64_t base = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? file.place : file.bytes.size();
    file.place = base + offset;
    return file.place;
}

int closeMemory(thandle_t) {
    return 0;
}

toff_t sizeOfMemory(thandle_t handle) {
    return fileOf(handle).bytes.size();
}

/// The library's first complaint; empty while there is none.
using Message = std::array<char, 256>;

int keepFirstMessage(TIFF*, void* message, const char*, const char* format, va_list arguments) {
    Message& kept = *static_cast<Message*>(message);
    if (kept[0] == '\0')
        (void)std::vsnprintf(kept.data(), kept.size(), format, arguments); // cut is good enough to be read
    return 1;
}

int ignoreWarning(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

struct TiffCloser {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffFile = std::unique_ptr<TIFF, TiffCloser>;

struct OptionsFreer {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

TiffFile openInMemory(MemoryFile& file, Message& message) {
    const std::unique_ptr<TIFFOpenOptions, OptionsFreer> options(TIFFOpenOptionsAlloc());
    if (!options)
        throw std::bad_alloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepFirstMessage, &message);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignoreWarning, nullptr);
    return TiffFile(TIFFClientOpenExt("picture", "wm", &file, readMemory, writeMemory, seekMemory,
                                      closeMemory, sizeOfMemory, nullptr, nullptr, options.get()));
}

enum class Kind { Rgb, Rgba, Palette, Bilevel };

struct Layout {
    Kind kind = Kind::Rgb;
    std::uint16_t samplesPerPixel = 3;
    std::uint16_t bitsPerSample = 8;
    std::uint16_t photometric = PHOTOMETRIC_RGB;

    std::size_t bytesPerRow(int width) const {
        return (static_cast<std::size_t>(width) * samplesPerPixel * bitsPerSample + 7) / 8;
    }
};

constexpr Layout rgbaLayout = {.kind = Kind::Rgba, .samplesPerPixel = 4};

Layout layoutForPalette(std::span<const Gdiplus::ARGB> palette, UINT bits) {
    if (std::ranges::any_of(palette, [](Gdiplus::ARGB colour) { return alphaOf(colour) != 255; }))
        return rgbaLayout;
    constexpr std::array<Gdiplus::ARGB, 2> blackAndWhite = {0xFF000000, 0xFFFFFFFF};
    constexpr std::array<Gdiplus::ARGB, 2> whiteAndBlack = {0xFFFFFFFF, 0xFF000000};
    if (bits == 1 && std::ranges::equal(palette, blackAndWhite))
        return {Kind::Bilevel, 1, 1, PHOTOMETRIC_MINISBLACK};
    if (bits == 1 && std::ranges::equal(palette, whiteAndBlack))
        return {Kind::Bilevel, 1, 1, PHOTOMETRIC_MINISWHITE};
    // TIFF 6.0, section 5 knows palettes for 4 and 8 bits only.
    return {Kind::Palette, 1, static_cast<std::uint16_t>(bits == 4 ? 4 : 8), PHOTOMETRIC_PALETTE};
}

Layout layoutFor(const ConstPixelView& picture, const PictureRows& rows) {
    if (picture.format == PixelFormat24bppRGB)
        return {};
    if (picture.format == PixelFormat32bppARGB)
        return rgbaLayout;
    return layoutForPalette(rows.palette(), GetPixelFormatSize(picture.format));
}

bool setColorMap(TIFF* tiff, std::span<const Gdiplus::ARGB> palette) {
    constexpr std::uint16_t fullRange = 65535 / 255;
    std::array<std::uint16_t, 256> red{};
    std::array<std::uint16_t, 256> green{};
    std::array<std::uint16_t, 256> blue{};
    for (std::size_t entry = 0; entry < palette.size(); ++entry) {
        red[entry] = static_cast<std::uint16_t>(redOf(palette[entry]) * fullRange);
        green[entry] = static_cast<std::uint16_t>(greenOf(palette[entry]) * fullRange);
        blue[entry] = static_cast<std::uint16_t>(blueOf(palette[entry]) * fullRange);
    }
    return TIFFSetField(tiff, TIFFTAG_COLORMAP, red.data(), green.data(), blue.data()) == 1;
}

bool setAlpha(TIFF* tiff) {
    const std::uint16_t unassociated = EXTRASAMPLE_UNASSALPHA;
    return TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &unassociated) == 1;
}

bool setKind(TIFF* tiff, const Layout& layout, const PictureRows& rows) {
    const auto set = [&](std::uint32_t tag, int value) { return TIFFSetField(tiff, tag, value) == 1; };
    if (!set(TIFFTAG_BITSPERSAMPLE, layout.bitsPerSample) ||
        !set(TIFFTAG_SAMPLESPERPIXEL, layout.samplesPerPixel) ||
        !set(TIFFTAG_PHOTOMETRIC, layout.photometric) || !set(TIFFTAG_COMPRESSION, COMPRESSION_LZW))
        return false;
    switch (layout.kind) {
    case Kind::Rgb:
        return set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    case Kind::Rgba:
        return set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL) && setAlpha(tiff);
    case Kind::Palette:
        return setColorMap(tiff, rows.palette());
    case Kind::Bilevel:
        return true;
    }
    return false;
}

bool setPlace(TIFF* tiff, const ConstPixelView& picture, const EncodeOptions& options, const Layout& layout) {
    const std::size_t rowsPerStrip = std::max<std::size_t>(1, stripBytes / layout.bytesPerRow(picture.width));
    return TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.width) == 1 &&
           TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, picture.height) == 1 &&
           TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rowsPerStrip)) == 1 &&
           TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == 1 &&
           TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT) == 1 &&
           TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH) == 1 &&
           TIFFSetField(tiff, TIFFTAG_XRESOLUTION, double{knownDotsPerInch(options.dpiX)}) == 1 &&
           TIFFSetField(tiff, TIFFTAG_YRESOLUTION, double{knownDotsPerInch(options.dpiY)}) == 1;
}

void fillRow(std::span<std::byte> row, int y, const ConstPixelView& picture, const PictureRows& rows,
             const Layout& layout) {
    if (layout.kind == Kind::Rgb)
        rows.rgb(y, row);
    else if (layout.kind == Kind::Rgba)
        rows.rgba(y, row);
    else if (layout.bitsPerSample == GetPixelFormatSize(picture.format))
        std::ranges::copy(rows.raw(y), row.begin());
    else
        rows.indices(y, {reinterpret_cast<std::uint8_t*>(row.data()), row.size()});
}

bool writePage(TIFF* tiff, const ConstPixelView& picture, const EncodeOptions& options) {
    const PictureRows rows(picture);
    const Layout layout = layoutFor(picture, rows);
    if (!setPlace(tiff, picture, options, layout) || !setKind(tiff, layout, rows))
        return false;
    std::vector<std::byte> row(layout.bytesPerRow(picture.width));
    for (int y = 0; y < picture.height; ++y) {
        fillRow(row, y, picture, rows, layout);
        if (TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0) != 1)
            return false;
    }
    return TIFFWriteDirectory(tiff) == 1;
}

Result<std::vector<std::byte>> makeFile(const ConstPixelView& picture, const EncodeOptions& options) {
    MemoryFile file;
    Message message{};
    TiffFile tiff = openInMemory(file, message);
    const bool isWritten = tiff && writePage(tiff.get(), picture, options);
    tiff.reset();
    if (file.full)
        return tooLarge("there is not enough memory for the TIFF file");
    if (!isWritten || message[0] != '\0')
        return damaged(fmt::format("the TIFF file can't be written: {}", message.data()));
    return std::move(file.bytes);
}

} // namespace

Result<void> encodeTiff(const ConstPixelView& picture, const EncodeOptions& options, ByteSink& sink) {
    if (auto fit = checkPicture(picture, "TIFF", std::numeric_limits<std::int32_t>::max()); !fit)
        return fit;
    const std::uint64_t rows = static_cast<std::uint64_t>(picture.height);
    if (bytesPerRow(picture.width, picture.format) * rows > mostFileBytes)
        return damaged("the picture is larger than the 4 GiB of a TIFF file");
    return makeFile(picture, options).and_then([&](const auto& bytes) { return sink.write(bytes); });
}

} // namespace GdiplusBackend
