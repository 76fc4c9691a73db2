#include "gdiplus/codecs/tiffdecoder/TiffShape.h"

#include "gdiplus/codecs/PixelBudget.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace GdiplusBackend {

namespace {

tl::unexpected<LoadError> unknownKind(std::string what) {
    return tl::unexpected(LoadError{Gdiplus::UnknownImageFormat, "TIFF: " + std::move(what)});
}

std::uint16_t shortTag(TIFF* file, std::uint32_t tag, std::uint16_t fallback) {
    std::uint16_t value = fallback;
    return TIFFGetField(file, tag, &value) ? value : fallback;
}

std::uint16_t photometricOf(TIFF* file, int samples) {
    return shortTag(file, TIFFTAG_PHOTOMETRIC, samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
}

bool isGrey(std::uint16_t photometric) {
    return photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE;
}

int coloursIn(std::uint16_t photometric) {
    switch (photometric) {
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_PALETTE:
        return 1;
    case PHOTOMETRIC_SEPARATED:
        return 4;
    default:
        return 3;
    }
}

TiffAlpha alphaOf(TIFF* file, int colours, int samples) {
    std::uint16_t count = 0;
    const std::uint16_t* kinds = nullptr;
    if (samples <= colours || !TIFFGetField(file, TIFFTAG_EXTRASAMPLES, &count, &kinds) || count == 0)
        return TiffAlpha::None;
    switch (kinds[0]) {
    case EXTRASAMPLE_ASSOCALPHA:
        return TiffAlpha::Premultiplied;
    case EXTRASAMPLE_UNASSALPHA:
        return TiffAlpha::Straight;
    default: // a mask for somebody's use, not what the picture covers
        return TiffAlpha::None;
    }
}

TiffColours coloursOf(TIFF* file, const TiffShape& shape, std::uint16_t photometric) {
    const auto compression = shortTag(file, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    const bool wholeBytes = shape.bitsPerSample % 8 == 0;
    if ((shape.separatePlanes && !wholeBytes) || compression == COMPRESSION_OJPEG || shape.bitsPerSample > 16)
        return TiffColours::ByLibrary;
    switch (photometric) {
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_MINISWHITE:
        return TiffColours::Indexed;
    case PHOTOMETRIC_PALETTE:
        return shape.bitsPerSample <= 8 ? TiffColours::Indexed : TiffColours::ByLibrary;
    case PHOTOMETRIC_RGB:
        return TiffColours::Rgb;
    case PHOTOMETRIC_SEPARATED:
        return shortTag(file, TIFFTAG_INKSET, INKSET_CMYK) == INKSET_CMYK ? TiffColours::Cmyk
                                                                          : TiffColours::ByLibrary;
    case PHOTOMETRIC_YCBCR:
        if (compression != COMPRESSION_JPEG || shape.separatePlanes)
            return TiffColours::ByLibrary;
        TIFFSetField(file, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        return TiffColours::Rgb;
    default:
        return TiffColours::ByLibrary;
    }
}

void fillGreyTable(TiffShape& shape, std::uint16_t photometric) {
    for (std::size_t value = 0; value < shape.table.size(); ++value)
        shape.table[value].fill(
            static_cast<std::byte>(photometric == PHOTOMETRIC_MINISWHITE ? 255 - value : value));
}

bool fillPaletteTable(TIFF* file, TiffShape& shape) {
    std::uint16_t* red = nullptr;
    std::uint16_t* green = nullptr;
    std::uint16_t* blue = nullptr;
    if (!TIFFGetField(file, TIFFTAG_COLORMAP, &red, &green, &blue))
        return false;
    const std::size_t count = std::size_t{1} << shape.bitsPerSample;
    const auto isNarrow = [count](const std::uint16_t* map) {
        return std::all_of(map, map + count, [](std::uint16_t value) { return value < 256; });
    };
    // Some writers leave the high bytes empty.
    const int shift = isNarrow(red) && isNarrow(green) && isNarrow(blue) ? 0 : 8;
    for (std::size_t index = 0; index < count; ++index)
        shape.table[index] = {static_cast<std::byte>(blue[index] >> shift),
                              static_cast<std::byte>(green[index] >> shift),
                              static_cast<std::byte>(red[index] >> shift)};
    shape.valuesAreIndices = true;
    return true;
}

Result<void> checkLibraryKnows(TIFF* file) {
    std::array<char, 1024> reason = {};
    if (!TIFFRGBAImageOK(file, reason.data()))
        return unknownKind(reason.data());
    return {};
}

Result<TiffShape> readSize(TIFF* file) {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    TIFFGetField(file, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(file, TIFFTAG_IMAGELENGTH, &height);
    if (const auto fits = checkPixelBudget(width, height); !fits)
        return tl::unexpected(fits.error());
    return TiffShape{.width = static_cast<int>(width), .height = static_cast<int>(height)};
}

/// A TIFF structure with the orientation alone.
std::vector<std::byte> exifWithOrientation(std::uint16_t orientation) {
    constexpr std::string_view littleEndian("II*\0\x08\0\0\0", 8);
    constexpr std::string_view oneShort("\x01\0\x12\x01\x03\0\x01\0\0\0", 10);
    std::string block;
    block.append(littleEndian).append(oneShort);
    block.push_back(static_cast<char>(orientation));
    block.append(std::string_view("\0\0\0\0\0\0\0", 7)); // the rest of the value, no further directory
    const auto bytes = std::as_bytes(std::span(block));
    return {bytes.begin(), bytes.end()};
}

bool readResolution(TIFF* file, PictureFacts& facts) {
    float x = 0;
    float y = 0;
    if (!TIFFGetField(file, TIFFTAG_XRESOLUTION, &x) || !TIFFGetField(file, TIFFTAG_YRESOLUTION, &y))
        return false;
    const auto unit = shortTag(file, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    constexpr float centimetresPerInch = 2.54F;
    constexpr float highest = 1e6F;
    const float factor = unit == RESUNIT_CENTIMETER ? centimetresPerInch : 1.0F;
    if (unit == RESUNIT_NONE || !(x > 0 && y > 0 && x < highest && y < highest))
        return false;
    facts.dpiX = x * factor;
    facts.dpiY = y * factor;
    return true;
}

/// The profile if it speaks of RGB, which is what comes out (ICC.1, 7.2.6: the colour space lies at 16).
std::vector<std::byte> rgbProfile(TIFF* file) {
    std::uint32_t length = 0;
    const void* profile = nullptr;
    if (!TIFFGetField(file, TIFFTAG_ICCPROFILE, &length, &profile) || length < 128)
        return {};
    const auto* bytes = static_cast<const std::byte*>(profile);
    if (std::memcmp(bytes + 16, "RGB ", 4) != 0)
        return {};
    return {bytes, bytes + length};
}

} // namespace

Result<TiffShape> readTiffShape(const TiffHandle& handle) {
    TIFF* file = handle.get();
    auto shape = readSize(file);
    if (!shape)
        return shape;
    shape->bitsPerSample = shortTag(file, TIFFTAG_BITSPERSAMPLE, 1);
    shape->samplesPerPixel = shortTag(file, TIFFTAG_SAMPLESPERPIXEL, 1);
    const auto sampleFormat = shortTag(file, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    if (sampleFormat != SAMPLEFORMAT_UINT && sampleFormat != SAMPLEFORMAT_VOID)
        return unknownKind("samples are not unsigned integers");
    const auto photometric = photometricOf(file, shape->samplesPerPixel);
    const int colours = coloursIn(photometric);
    if (shape->bitsPerSample < 1 || shape->samplesPerPixel < colours)
        return damaged("TIFF: too few samples for the kind of colour");
    shape->greyScale = isGrey(photometric);
    shape->separatePlanes =
        shape->samplesPerPixel > 1 &&
        shortTag(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    shape->colours = coloursOf(file, *shape, photometric);
    if (shape->colours != TiffColours::ByLibrary)
        shape->alpha = alphaOf(file, colours, shape->samplesPerPixel);
    if (shape->colours == TiffColours::ByLibrary) {
        if (const auto known = checkLibraryKnows(file); !known)
            return tl::unexpected(known.error());
    } else if (shape->greyScale) {
        fillGreyTable(*shape, photometric);
    } else if (photometric == PHOTOMETRIC_PALETTE && !fillPaletteTable(file, *shape)) {
        return damaged("TIFF: a palette picture without a palette");
    }
    if (shape->packedRowBytes() > mostTiffBytesAtOnce())
        return tooLarge("TIFF: one row is larger than a whole picture may be");
    return shape;
}

PictureFacts readTiffFacts(const TiffHandle& handle, const TiffShape& shape) {
    TIFF* file = handle.get();
    PictureFacts facts;
    facts.width = shape.width;
    facts.height = shape.height;
    facts.rawFormat = Gdiplus::ImageFormatTIFF;
    facts.flags = Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize |
                  (shape.greyScale ? Gdiplus::ImageFlagsColorSpaceGRAY : Gdiplus::ImageFlagsColorSpaceRGB);
    if (shape.alpha == TiffAlpha::None) {
        facts.layout = RowLayout::Bgr24;
    } else {
        facts.layout = RowLayout::Bgra32;
        facts.flags |= Gdiplus::ImageFlagsHasAlpha;
    }
    if (readResolution(file, facts))
        facts.flags |= Gdiplus::ImageFlagsHasRealDPI;
    std::uint16_t orientation = 0;
    if (TIFFGetField(file, TIFFTAG_ORIENTATION, &orientation))
        facts.exif = exifWithOrientation(orientation);
    facts.iccProfile = rgbProfile(file);
    return facts;
}

} // namespace GdiplusBackend
