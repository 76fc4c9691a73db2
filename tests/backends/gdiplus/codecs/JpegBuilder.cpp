#include "backends/gdiplus/codecs/JpegBuilder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace GdiplusBackend {

JpegBuilder& JpegBuilder::spaces(J_COLOR_SPACE given, J_COLOR_SPACE stored) {
    input = given;
    file = stored;
    return *this;
}

JpegBuilder& JpegBuilder::set(std::function<void(jpeg_compress_struct&)> change) {
    changes.push_back(std::move(change));
    return *this;
}

JpegBuilder& JpegBuilder::withoutAdobeMarker() {
    return set([](jpeg_compress_struct& info) { info.write_Adobe_marker = FALSE; });
}

JpegBuilder& JpegBuilder::progressive() {
    return set([](jpeg_compress_struct& info) { jpeg_simple_progression(&info); });
}

JpegBuilder& JpegBuilder::arithmetic() {
    return set([](jpeg_compress_struct& info) { info.arith_code = TRUE; });
}

JpegBuilder& JpegBuilder::optimised() {
    return set([](jpeg_compress_struct& info) { info.optimize_coding = TRUE; });
}

JpegBuilder& JpegBuilder::quality(int percent) {
    return set([percent](jpeg_compress_struct& info) { jpeg_set_quality(&info, percent, TRUE); });
}

JpegBuilder& JpegBuilder::sampling(int x, int y) {
    return set([=](jpeg_compress_struct& info) {
        info.comp_info[0].h_samp_factor = x;
        info.comp_info[0].v_samp_factor = y;
    });
}

JpegBuilder& JpegBuilder::notInterleaved() {
    static constexpr std::array<jpeg_scan_info, 3> scans = {
        {{1, {0}, 0, 63, 0, 0}, {1, {1}, 0, 63, 0, 0}, {1, {2}, 0, 63, 0, 0}}};
    return set([](jpeg_compress_struct& info) {
        info.scan_info = scans.data();
        info.num_scans = static_cast<int>(scans.size());
    });
}

JpegBuilder& JpegBuilder::restartEvery(unsigned int blocks) {
    return set([blocks](jpeg_compress_struct& info) { info.restart_interval = blocks; });
}

JpegBuilder& JpegBuilder::density(UINT8 unit, UINT16 x, UINT16 y) {
    return set([=](jpeg_compress_struct& info) {
        info.density_unit = unit;
        info.X_density = x;
        info.Y_density = y;
    });
}

JpegBuilder& JpegBuilder::exif(const Bytes& tiff) {
    constexpr std::string_view identifier("Exif\0\0", 6);
    exifBlock.resize(identifier.size() + tiff.size());
    std::memcpy(exifBlock.data(), identifier.data(), identifier.size());
    std::copy(tiff.begin(), tiff.end(), exifBlock.begin() + identifier.size());
    return *this;
}

JpegBuilder& JpegBuilder::iccProfile(Bytes profile) {
    profileBlock = std::move(profile);
    return *this;
}

Bytes JpegBuilder::build() const {
    jpeg_compress_struct info = {};
    jpeg_error_mgr errors = {};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&info, &memory, &length);
    info.image_width = static_cast<JDIMENSION>(width);
    info.image_height = static_cast<JDIMENSION>(height);
    info.in_color_space = input;
    info.input_components = input == JCS_GRAYSCALE ? 1 : input == JCS_CMYK ? 4 : 3;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 100, TRUE);
    jpeg_set_colorspace(&info, file);
    for (const auto& change : changes)
        change(info);
    jpeg_start_compress(&info, TRUE);
    if (!exifBlock.empty())
        jpeg_write_marker(&info, JPEG_APP0 + 1, reinterpret_cast<const JOCTET*>(exifBlock.data()),
                          static_cast<unsigned int>(exifBlock.size()));
    if (!profileBlock.empty())
        jpeg_write_icc_profile(&info, reinterpret_cast<const JOCTET*>(profileBlock.data()),
                               static_cast<unsigned int>(profileBlock.size()));
    writeRows(info);
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const auto bytes = std::as_bytes(std::span(memory, length));
    Bytes result(bytes.begin(), bytes.end());
    std::free(memory);
    return result;
}

void JpegBuilder::writeRows(jpeg_compress_struct& info) const {
    const auto channels = static_cast<std::size_t>(info.input_components);
    std::vector<JSAMPLE> row(static_cast<std::size_t>(width) * channels);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::array<int, 4> samples = picture(x, y);
            for (std::size_t channel = 0; channel < channels; ++channel)
                row[static_cast<std::size_t>(x) * channels + channel] =
                    static_cast<JSAMPLE>(samples[channel]);
        }
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&info, &rows, 1);
    }
}

} // namespace GdiplusBackend
