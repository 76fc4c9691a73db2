#include "backends/gdiplus/codecs/TiffBuilder.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace GdiplusBackend {

namespace {

struct MemoryFile {
    Bytes bytes;
    std::size_t place = 0;
};

MemoryFile& fileOf(thandle_t handle) {
    return *static_cast<MemoryFile*>(handle);
}

tmsize_t readFile(thandle_t handle, void* out, tmsize_t count) {
    MemoryFile& file = fileOf(handle);
    const std::size_t left = file.bytes.size() - std::min(file.place, file.bytes.size());
    const std::size_t got = std::min(left, static_cast<std::size_t>(count));
    if (got)
        std::memcpy(out, file.bytes.data() + file.place, got);
    file.place += got;
    return static_cast<tmsize_t>(got);
}

tmsize_t writeFile(thandle_t handle, void* bytes, tmsize_t count) {
    MemoryFile& file = fileOf(handle);
    const std::size_t end = file.place + static_cast<std::size_t>(count);
    file.bytes.resize(std::max(file.bytes.size(), end));
    std::memcpy(file.bytes.data() + file.place, bytes, static_cast<std::size_t>(count));
    file.place = end;
    return count;
}

toff_t seekFile(thandle_t handle, toff_t offset, int whence) {
    MemoryFile& file = fileOf(handle);
    const std::size_t base = whence == SEEK_END ? file.bytes.size() : whence == SEEK_CUR ? file.place : 0;
    return file.place = base + offset;
}

toff_t sizeOfFile(thandle_t handle) {
    return fileOf(handle).bytes.size();
}

int closeFile(thandle_t /*handle*/) {
    return 0;
}

/// Packs samples from the highest bit on; 16 bits in the machine's order, which libtiff turns round.
class SamplePacker {
public:
    explicit SamplePacker(int bitsPerSample)
        : bits(bitsPerSample) {}

    void put(int value) {
        if (bits == 16) {
            const auto word = static_cast<std::uint16_t>(value);
            const auto both = std::as_bytes(std::span(&word, 1));
            packed.insert(packed.end(), both.begin(), both.end());
            return;
        }
        for (int bit = bits - 1; bit >= 0; --bit) {
            if (used % 8 == 0)
                packed.push_back(std::byte{0});
            packed.back() |= static_cast<std::byte>((value >> bit & 1) << (7 - used % 8));
            ++used;
        }
    }

    Bytes& bytes() { return packed; }

private:
    int bits;
    int used = 0;
    Bytes packed;
};

void setTags(TIFF* tiff, const TiffSpec& spec) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, spec.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, spec.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, spec.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, spec.samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, spec.photometric);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, spec.compression);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, spec.planes);
    if (spec.compression == COMPRESSION_JPEG && spec.photometric == PHOTOMETRIC_YCBCR)
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    if (spec.tileSide) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, spec.tileSide);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, spec.tileSide);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, spec.rowsPerStrip);
    }
}

void setOptionalTags(TIFF* tiff, const TiffSpec& spec) {
    if (!spec.extra.empty()) {
        const std::vector<std::uint16_t> kinds(spec.extra.begin(), spec.extra.end());
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, static_cast<int>(kinds.size()), kinds.data());
    }
    if (!spec.palette.empty()) {
        const std::vector<std::uint16_t> map(spec.palette.begin(), spec.palette.end());
        const std::size_t count = map.size() / 3;
        TIFFSetField(tiff, TIFFTAG_COLORMAP, map.data(), map.data() + count, map.data() + 2 * count);
    }
    if (spec.sampleFormat)
        TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, spec.sampleFormat);
    if (spec.orientation)
        TIFFSetField(tiff, TIFFTAG_ORIENTATION, spec.orientation);
    if (spec.resolutionUnit) {
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, spec.resolutionUnit);
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(spec.dpi));
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(spec.dpi * 2));
    }
    if (!spec.iccProfile.empty())
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<int>(spec.iccProfile.size()),
                     spec.iccProfile.data());
}

/// Samples of a part of a row; beyond the picture's edge they are zero.
void packRow(const TiffSpec& spec, SamplePacker& packer, int left, int y, int count, int plane) {
    const bool separate = spec.planes == PLANARCONFIG_SEPARATE;
    for (int x = left; x < left + count; ++x)
        for (int sample = separate ? plane : 0; sample < (separate ? plane + 1 : spec.samples); ++sample)
            packer.put(x < spec.width && y < spec.height ? spec.sample(x, y, sample) : 0);
}

bool writeStrips(TIFF* tiff, const TiffSpec& spec, int plane) {
    for (int y = 0; y < spec.height; ++y) {
        SamplePacker row(spec.bits);
        packRow(spec, row, 0, y, spec.width, plane);
        if (TIFFWriteScanline(tiff, row.bytes().data(), static_cast<std::uint32_t>(y),
                              static_cast<std::uint16_t>(plane)) < 0)
            return false;
    }
    return true;
}

bool writeTiles(TIFF* tiff, const TiffSpec& spec, int plane) {
    for (int top = 0; top < spec.height; top += spec.tileSide)
        for (int left = 0; left < spec.width; left += spec.tileSide) {
            SamplePacker tile(spec.bits);
            for (int y = top; y < top + spec.tileSide; ++y)
                packRow(spec, tile, left, y, spec.tileSide, plane);
            if (TIFFWriteTile(tiff, tile.bytes().data(), static_cast<std::uint32_t>(left),
                              static_cast<std::uint32_t>(top), 0, static_cast<std::uint16_t>(plane)) < 0)
                return false;
        }
    return true;
}

} // namespace

Bytes buildTiff(const TiffSpec& spec) {
    MemoryFile file;
    TIFF* tiff = TIFFClientOpen("memory", spec.mode, &file, readFile, writeFile, seekFile, closeFile,
                                sizeOfFile, nullptr, nullptr);
    if (!tiff)
        throw std::logic_error("libtiff can't write");
    setTags(tiff, spec);
    setOptionalTags(tiff, spec);
    bool written = true;
    for (int plane = 0; plane < (spec.planes == PLANARCONFIG_SEPARATE ? spec.samples : 1); ++plane)
        written = written && (spec.tileSide ? writeTiles(tiff, spec, plane) : writeStrips(tiff, spec, plane));
    TIFFClose(tiff);
    if (!written)
        throw std::logic_error("the TIFF file can't be written");
    return file.bytes;
}

} // namespace GdiplusBackend
