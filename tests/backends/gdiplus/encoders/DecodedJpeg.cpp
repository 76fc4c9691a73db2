#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include <jpeglib.h>

namespace GdiplusBackend {

namespace {

/// Ends the test program with the library's message where a file is no JPEG: the library's own way.
struct Decompressor {
    explicit Decompressor(std::span<const std::byte> file) {
        jpeg.err = jpeg_std_error(&errors);
        jpeg_create_decompress(&jpeg);
        jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char*>(file.data()), file.size());
        jpeg_read_header(&jpeg, TRUE);
    }
    ~Decompressor() { jpeg_destroy_decompress(&jpeg); }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;

    jpeg_decompress_struct jpeg{};
    jpeg_error_mgr errors{};
};

void readTables(const jpeg_decompress_struct& jpeg, DecodedJpeg& picture) {
    for (const JQUANT_TBL* table : jpeg.quant_tbl_ptrs) {
        if (!table)
            continue;
        auto& levels = picture.tables.emplace_back();
        std::copy(std::begin(table->quantval), std::end(table->quantval), levels.begin());
    }
}

} // namespace

DecodedJpeg decodeJpeg(std::span<const std::byte> file) {
    Decompressor decompressor(file);
    jpeg_decompress_struct& jpeg = decompressor.jpeg;
    DecodedJpeg picture;
    picture.width = static_cast<int>(jpeg.image_width);
    picture.height = static_cast<int>(jpeg.image_height);
    picture.components = jpeg.num_components;
    picture.bitsPerPixel = 8 * jpeg.num_components;
    picture.lumaSampling = {jpeg.comp_info[0].h_samp_factor, jpeg.comp_info[0].v_samp_factor};
    EXPECT_EQ(jpeg.density_unit, 1);
    picture.dpiX = jpeg.X_density;
    picture.dpiY = jpeg.Y_density;
    jpeg.out_color_space = JCS_RGB;
    jpeg_start_decompress(&jpeg);
    readTables(jpeg, picture);
    std::vector<JSAMPLE> row(std::size_t{3} * jpeg.output_width);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW samples = row.data();
        jpeg_read_scanlines(&jpeg, &samples, 1);
        for (std::size_t i = 0; i < row.size(); i += 3)
            picture.pixels.push_back(Gdiplus::Color::MakeARGB(255, row[i], row[i + 1], row[i + 2]));
    }
    picture.isBaseline = jpeg.progressive_mode == FALSE && jpeg.arith_code == FALSE;
    jpeg_finish_decompress(&jpeg);
    EXPECT_EQ(decompressor.errors.num_warnings, 0);
    return picture;
}

} // namespace GdiplusBackend
