#include "backends/gdiplus/codecs/PngBuilder.h"

#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>

namespace GdiplusBackend {

namespace {

void appendTo(png_structp png, png_bytep data, std::size_t length) {
    auto& file = *static_cast<Bytes*>(png_get_io_ptr(png));
    const auto bytes = std::as_bytes(std::span(data, length));
    file.insert(file.end(), bytes.begin(), bytes.end());
}

void appendBigEndian(Bytes& bytes, std::uint32_t value) {
    for (const int shift : {24, 16, 8, 0})
        bytes.push_back(static_cast<std::byte>(value >> shift));
}

std::vector<png_byte> narrowed(const std::vector<int>& values) {
    std::vector<png_byte> bytes;
    bytes.reserve(values.size());
    for (const int value : values)
        bytes.push_back(static_cast<png_byte>(value));
    return bytes;
}

std::vector<png_color> entriesOf(const std::vector<std::array<int, 3>>& colours) {
    std::vector<png_color> entries;
    entries.reserve(colours.size());
    for (const auto& colour : colours)
        entries.push_back({static_cast<png_byte>(colour[0]), static_cast<png_byte>(colour[1]),
                           static_cast<png_byte>(colour[2])});
    return entries;
}

} // namespace

PngBuilder& PngBuilder::interlaced() {
    adam7 = true;
    return *this;
}

PngBuilder& PngBuilder::palette(std::vector<std::array<int, 3>> entries) {
    colours = std::move(entries);
    return *this;
}

PngBuilder& PngBuilder::paletteAlpha(std::vector<int> entries) {
    alphas = std::move(entries);
    return *this;
}

PngBuilder& PngBuilder::transparentColour(std::array<int, 3> samples) {
    transparent = {samples};
    return *this;
}

PngBuilder& PngBuilder::resolution(unsigned int perMetreX, unsigned int perMetreY) {
    dotsX = perMetreX;
    dotsY = perMetreY;
    return *this;
}

PngBuilder& PngBuilder::filter(int number) {
    oneFilter = number;
    return *this;
}

PngBuilder& PngBuilder::chunksOf(std::size_t bytes) {
    chunkBytes = bytes;
    return *this;
}

Bytes PngBuilder::build() const {
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, appendTo, nullptr);
    png_set_compression_buffer_size(png, chunkBytes);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, oneFilter < 0 ? PNG_ALL_FILTERS : PNG_FILTER_NONE << oneFilter);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), kind.bitDepth,
                 kind.colour, adam7 ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (dotsX > 0)
        png_set_pHYs(png, info, dotsX, dotsY, PNG_RESOLUTION_METER);
    if (!colours.empty())
        png_set_PLTE(png, info, entriesOf(colours).data(), static_cast<int>(colours.size()));
    if (!alphas.empty())
        png_set_tRNS(png, info, narrowed(alphas).data(), static_cast<int>(alphas.size()), nullptr);
    for (const auto& colour : transparent) {
        png_color_16 samples = {};
        samples.gray = samples.red = static_cast<png_uint_16>(colour[0]);
        samples.green = static_cast<png_uint_16>(colour[1]);
        samples.blue = static_cast<png_uint_16>(colour[2]);
        png_set_tRNS(png, info, nullptr, 0, &samples);
    }
    png_write_info(png, info);
    std::vector<Bytes> rows = packedRows();
    std::vector<png_bytep> pointers;
    pointers.reserve(rows.size());
    for (Bytes& row : rows)
        pointers.push_back(reinterpret_cast<png_bytep>(row.data()));
    png_write_image(png, pointers.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

std::vector<Bytes> PngBuilder::packedRows() const {
    const int channels = kind.channels();
    const std::size_t rowBytes = static_cast<std::size_t>((width * channels * kind.bitDepth + 7) / 8);
    std::vector<Bytes> rows(static_cast<std::size_t>(height), Bytes(rowBytes));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::array<int, 4> samples = picture(x, y);
            for (int channel = 0; channel < channels; ++channel) {
                const int bit = (x * channels + channel) * kind.bitDepth;
                const int sample = samples[static_cast<std::size_t>(channel)];
                std::byte* place = &rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(bit / 8)];
                if (kind.bitDepth == 16) {
                    place[0] = static_cast<std::byte>(sample >> 8);
                    place[1] = static_cast<std::byte>(sample);
                } else {
                    *place |= static_cast<std::byte>(sample << (8 - kind.bitDepth - bit % 8));
                }
            }
        }
    return rows;
}

Bytes pngChunk(std::string_view type, const Bytes& content) {
    Bytes chunk;
    appendBigEndian(chunk, static_cast<std::uint32_t>(content.size()));
    const auto name = std::as_bytes(std::span(type));
    chunk.insert(chunk.end(), name.begin(), name.end());
    chunk.insert(chunk.end(), content.begin(), content.end());
    const auto checked = std::span(chunk).subspan(4);
    appendBigEndian(chunk, static_cast<std::uint32_t>(
                               crc32_z(0, reinterpret_cast<const Bytef*>(checked.data()), checked.size())));
    return chunk;
}

std::size_t placeOfChunk(const Bytes& file, std::string_view type) {
    const auto name = std::as_bytes(std::span(type));
    const auto found = std::search(file.begin(), file.end(), name.begin(), name.end());
    return found == file.end() ? file.size() : static_cast<std::size_t>(found - file.begin()) - 4;
}

Bytes withBytesBefore(const Bytes& file, std::string_view type, const Bytes& inserted) {
    Bytes result = file;
    result.insert(result.begin() + static_cast<std::ptrdiff_t>(placeOfChunk(file, type)), inserted.begin(),
                  inserted.end());
    return result;
}

Bytes packedProfile(const Bytes& profile) {
    uLongf length = compressBound(profile.size());
    Bytes content(2 + 1 + length);
    content[0] = std::byte{'p'};
    compress(reinterpret_cast<Bytef*>(&content[3]), &length, reinterpret_cast<const Bytef*>(profile.data()),
             profile.size());
    content.resize(3 + length);
    return content;
}

} // namespace GdiplusBackend
