#include "support/JpegFile.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <jpeglib.h>

namespace TestSupport {

namespace {

/// An APP1 segment's content with one little-endian directory of one entry, the orientation.
std::string exifSegment(int orientation) {
    std::string segment("Exif\0\0II\x2A\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 24);
    segment += static_cast<char>(orientation);
    segment.append(7, '\0'); // the rest of the value, and no further directory
    return segment;
}

const JOCTET* bytesOf(const std::string& text) {
    return reinterpret_cast<const JOCTET*>(text.data());
}

void writeRows(jpeg_compress_struct& jpeg, const JpegFile& file) {
    const int components = jpeg.input_components;
    std::vector<JSAMPLE> row(static_cast<std::size_t>(file.width * components));
    for (int y = 0; y < file.height; ++y) {
        auto sample = row.begin();
        for (int x = 0; x < file.width; ++x)
            for (int shift = 8 * (components - 1); shift >= 0; shift -= 8)
                *sample++ = static_cast<JSAMPLE>(file.pixelAt(x, y) >> shift);
        JSAMPROW start = row.data();
        jpeg_write_scanlines(&jpeg, &start, 1);
    }
}

} // namespace

std::vector<unsigned char> JpegFile::bytes() const {
    jpeg_compress_struct jpeg = {};
    jpeg_error_mgr errors = {};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* memory = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&jpeg, &memory, &length);

    jpeg.image_width = static_cast<JDIMENSION>(width);
    jpeg.image_height = static_cast<JDIMENSION>(height);
    jpeg.input_components = colors == JpegColors::Rgb ? 3 : 4;
    jpeg.in_color_space = colors == JpegColors::Rgb ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 100, TRUE);
    jpeg.comp_info[0].h_samp_factor = 1;
    jpeg.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&jpeg, TRUE);
    if (orientation != 0) {
        const std::string exif = exifSegment(orientation);
        jpeg_write_marker(&jpeg, JPEG_APP0 + 1, bytesOf(exif), static_cast<unsigned>(exif.size()));
    }
    if (!iccProfile.empty())
        jpeg_write_icc_profile(&jpeg, bytesOf(iccProfile), static_cast<unsigned>(iccProfile.size()));
    writeRows(jpeg, *this);
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);

    std::vector<unsigned char> result(memory, memory + length);
    std::free(memory);
    return result;
}

} // namespace TestSupport
