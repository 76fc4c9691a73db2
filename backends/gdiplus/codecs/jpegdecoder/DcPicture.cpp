#include "gdiplus/codecs/jpegdecoder/DcPicture.h"

#include <algorithm>
#include <array>

namespace GdiplusBackend {

namespace {

using Samples = std::vector<std::uint8_t>;

constexpr int blockLength = 8;

/// T.81, A.3.3 and F.2.1.4 for a block whose only coefficient is the first. Sums far outside the range, which
/// only damage makes, wrap around as they do in libjpeg.
std::uint8_t sampleOf(int dc, int quantum) {
    constexpr int wrap = 1024;
    const int level = (dc * quantum + 4) >> 3;
    return static_cast<std::uint8_t>(std::clamp(((level + wrap / 2) & (wrap - 1)) - wrap / 2 + 128, 0, 255));
}

std::byte sampleByte(int value) {
    return static_cast<std::byte>(std::clamp(value, 0, 255));
}

/// ITU-T T.871, clause 7; the factors have 16 bits of fraction.
void putYCbCr(const std::array<Samples, 3>& samples, std::span<std::byte> row) {
    constexpr int redOfCr = 91881; // 1.402
    constexpr int greenOfCb = 22554;
    constexpr int greenOfCr = 46802;
    constexpr int blueOfCb = 116130;
    constexpr int half = 1 << 15;
    for (std::size_t x = 0; x < row.size() / 3; ++x) {
        const int luma = samples[0][x];
        const int cb = samples[1][x] - 128;
        const int cr = samples[2][x] - 128;
        row[x * 3] = sampleByte(luma + ((blueOfCb * cb + half) >> 16));
        row[x * 3 + 1] = sampleByte(luma + ((half - greenOfCb * cb - greenOfCr * cr) >> 16));
        row[x * 3 + 2] = sampleByte(luma + ((redOfCr * cr + half) >> 16));
    }
}

void putRgb(const std::array<Samples, 3>& samples, std::span<std::byte> row) {
    for (std::size_t x = 0; x < row.size() / 3; ++x)
        for (std::size_t channel = 0; channel < 3; ++channel)
            row[x * 3 + channel] = std::byte{samples[2 - channel][x]};
}

/// The step of the DC coefficients; none for a missing table, or a step with which libjpeg overflows.
std::optional<int> quantumOf(const jpeg_decompress_struct& header, const jpeg_component_info& component) {
    if (component.quant_tbl_no < 0 || component.quant_tbl_no >= NUM_QUANT_TBLS)
        return std::nullopt;
    const JQUANT_TBL* table = header.quant_tbl_ptrs[component.quant_tbl_no];
    if (!table || table->quantval[0] > INT16_MAX)
        return std::nullopt;
    return table->quantval[0];
}

} // namespace

std::optional<DcPicture> DcPicture::forHeader(const jpeg_decompress_struct& header) {
    DcPicture picture;
    if (header.jpeg_color_space == JCS_YCbCr && header.out_color_space == JCS_EXT_BGR)
        picture.colours = Colours::YCbCr;
    else if (header.jpeg_color_space == JCS_RGB && header.out_color_space == JCS_EXT_BGR)
        picture.colours = Colours::Rgb;
    else if (header.jpeg_color_space != JCS_GRAYSCALE || header.out_color_space != JCS_GRAYSCALE)
        return std::nullopt;
    picture.mostX = header.max_h_samp_factor;
    picture.mostY = header.max_v_samp_factor;
    picture.width = reducedLength(static_cast<int>(header.image_width), blockLength);
    picture.height = reducedLength(static_cast<int>(header.image_height), blockLength);
    picture.mcusWide = reducedLength(picture.width, picture.mostX);
    picture.mcusHigh = reducedLength(picture.height, picture.mostY);
    for (int i = 0; i < header.num_components; ++i) {
        const jpeg_component_info& component = header.comp_info[i];
        const std::optional<int> quantum = quantumOf(header, component);
        if (!quantum || picture.mostX % component.h_samp_factor != 0 ||
            picture.mostY % component.v_samp_factor != 0)
            return std::nullopt;
        DcPlane plane = {component.component_id,
                         component.h_samp_factor,
                         component.v_samp_factor,
                         static_cast<int>(component.width_in_blocks),
                         static_cast<int>(component.height_in_blocks),
                         picture.mcusWide * component.h_samp_factor,
                         *quantum,
                         {}};
        const int rows = picture.mcusHigh * component.v_samp_factor;
        plane.dc.resize(static_cast<std::size_t>(plane.stride) * static_cast<std::size_t>(rows));
        picture.planes.push_back(std::move(plane));
    }
    return picture;
}

void DcPicture::fillSamples(const DcPlane& plane, int y, std::span<std::uint8_t> samples) const {
    const auto repeated = static_cast<std::size_t>(mostX / plane.samplingX);
    const std::int16_t* blocks = plane.at(0, y / (mostY / plane.samplingY));
    if (repeated == 1) {
        for (std::uint8_t& sample : samples)
            sample = sampleOf(*blocks++, plane.quantum);
        return;
    }
    for (; !samples.empty(); samples = samples.subspan(std::min(repeated, samples.size())))
        std::fill_n(samples.begin(), std::min(repeated, samples.size()), sampleOf(*blocks++, plane.quantum));
}

void DcPicture::giveRows(RowSink& sink) const {
    std::array<Samples, 3> samples;
    for (Samples& line : samples)
        line.resize(static_cast<std::size_t>(width));
    std::vector<std::byte> row(static_cast<std::size_t>(width) * 3);
    for (int y = 0; y < height; ++y) {
        for (std::size_t i = 0; i < planes.size(); ++i)
            fillSamples(planes[i], y, samples[i]);
        switch (colours) {
        case Colours::Grey:
            sink.putRow(std::as_bytes(std::span(samples[0])));
            continue;
        case Colours::YCbCr:
            putYCbCr(samples, row);
            break;
        case Colours::Rgb:
            putRgb(samples, row);
            break;
        }
        sink.putRow(row);
    }
}

} // namespace GdiplusBackend
