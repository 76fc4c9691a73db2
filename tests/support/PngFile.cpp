#include "support/PngFile.h"

#include <png.h>
#include <zlib.h>

namespace TestSupport {

namespace {

void appendBytes(png_structp png, png_bytep data, std::size_t length) {
    auto* out = static_cast<std::vector<unsigned char>*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}

void flushNothing(png_structp) {}

std::vector<png_color> pngPalette(const std::vector<std::uint32_t>& colors) {
    std::vector<png_color> palette;
    palette.reserve(colors.size());
    for (const std::uint32_t color : colors)
        palette.push_back({static_cast<png_byte>(color >> 16), static_cast<png_byte>(color >> 8),
                           static_cast<png_byte>(color)});
    return palette;
}

std::vector<png_byte> rowOf(const PngFile& file, int y) {
    std::vector<png_byte> row;
    for (int x = 0; x < file.width; ++x) {
        const std::uint32_t pixel = file.pixelAt(x, y);
        if (file.palette.empty())
            for (const int shift : {16, 8, 0, 24})
                row.push_back(static_cast<png_byte>(pixel >> shift));
        else
            row.push_back(static_cast<png_byte>(pixel));
    }
    return row;
}

} // namespace

std::vector<unsigned char> PngFile::bytes() const {
    std::vector<unsigned char> out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &out, appendBytes, flushNothing);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
                 palette.empty() ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!palette.empty())
        png_set_PLTE(png, info, pngPalette(palette).data(), static_cast<int>(palette.size()));
    png_write_info(png, info);
    for (int y = 0; y < height; ++y)
        png_write_row(png, rowOf(*this, y).data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

std::uint32_t pngChecksum(std::span<const unsigned char> typeAndContent) {
    return static_cast<std::uint32_t>(
        crc32(0, typeAndContent.data(), static_cast<unsigned>(typeAndContent.size())));
}

} // namespace TestSupport
