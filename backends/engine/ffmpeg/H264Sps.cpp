#include "engine/ffmpeg/H264Sps.h"

#include <array>
#include <vector>

namespace EngineBackend {

namespace {

/// Bits from the highest on; reading beyond the end gives zeros and is remembered.
class BitReader {
public:
    explicit BitReader(std::span<const std::uint8_t> data)
        : bytes(data) {}

    unsigned bit() {
        if (place >= bytes.size() * 8) {
            isBeyondEnd = true;
            return 0;
        }
        const unsigned byte = bytes[place / 8];
        return byte >> (7 - place++ % 8) & 1U;
    }

    unsigned bits(int count) {
        unsigned value = 0;
        for (int i = 0; i < count; ++i)
            value = value << 1U | bit();
        return value;
    }

    /// ue(v) of ITU-T H.264, 9.1; good enough for se(v) where the value is skipped.
    unsigned golomb() {
        int zeros = 0;
        while (zeros < 31 && bit() == 0 && !isBeyondEnd)
            ++zeros;
        return (1U << static_cast<unsigned>(zeros)) - 1 + bits(zeros);
    }

    bool failed() const { return isBeyondEnd; }

private:
    std::span<const std::uint8_t> bytes;
    std::size_t place = 0;
    bool isBeyondEnd = false;
};

/// ITU-T H.264, 7.3.1: a 3 behind two zeros only keeps start codes from appearing.
std::vector<std::uint8_t> withoutEmulationPrevention(std::span<const std::uint8_t> unit) {
    std::vector<std::uint8_t> plain;
    int zeros = 0;
    for (const std::uint8_t byte : unit) {
        const bool isGuard = zeros >= 2 && byte == 3;
        zeros = byte == 0 ? zeros + 1 : 0;
        if (!isGuard)
            plain.push_back(byte);
    }
    return plain;
}

/// ITU-T H.264, 7.3.2.1.1.1.
void skipScalingList(BitReader& reader, int size) {
    int last = 8;
    for (int i = 0; i < size; ++i) {
        const auto code = static_cast<int>(reader.golomb() & 0xFFFFU);
        const int delta = code % 2 != 0 ? (code + 1) / 2 : -(code / 2);
        const int next = (last + delta + 256) % 256;
        if (next == 0)
            return;
        last = next;
    }
}

void skipChromaFormat(BitReader& reader, unsigned profile) {
    constexpr std::array<unsigned, 13> profilesWithChromaFormat = {100, 110, 122, 244, 44,  83, 86,
                                                                   118, 128, 138, 139, 134, 135};
    bool hasChromaFormat = false;
    for (const unsigned known : profilesWithChromaFormat)
        hasChromaFormat = hasChromaFormat || profile == known;
    if (!hasChromaFormat)
        return;
    const unsigned chromaFormat = reader.golomb();
    if (chromaFormat == 3)
        reader.bit(); // separate_colour_plane_flag
    reader.golomb();  // bit_depth_luma_minus8
    reader.golomb();  // bit_depth_chroma_minus8
    reader.bit();     // qpprime_y_zero_transform_bypass_flag
    if (reader.bit() == 0)
        return;
    const int lists = chromaFormat == 3 ? 12 : 8;
    for (int i = 0; i < lists; ++i)
        if (reader.bit() != 0)
            skipScalingList(reader, i < 6 ? 16 : 64);
}

void skipPictureOrder(BitReader& reader) {
    const unsigned type = reader.golomb();
    if (type == 0) {
        reader.golomb(); // log2_max_pic_order_cnt_lsb_minus4
    } else if (type == 1) {
        reader.bit();    // delta_pic_order_always_zero_flag
        reader.golomb(); // offset_for_non_ref_pic
        reader.golomb(); // offset_for_top_to_bottom_field
        const unsigned cycle = reader.golomb() & 0xFFU;
        for (unsigned i = 0; i < cycle; ++i)
            reader.golomb();
    }
}

void skipSize(BitReader& reader) {
    reader.golomb(); // max_num_ref_frames
    reader.bit();    // gaps_in_frame_num_value_allowed_flag
    reader.golomb(); // pic_width_in_mbs_minus1
    reader.golomb(); // pic_height_in_map_units_minus1
    if (reader.bit() == 0)
        reader.bit(); // mb_adaptive_frame_field_flag
    reader.bit();     // direct_8x8_inference_flag
    if (reader.bit() != 0)
        for (int edge = 0; edge < 4; ++edge)
            reader.golomb(); // cropping
}

/// ITU-T H.264, table E-1.
Rational readAspect(BitReader& reader) {
    constexpr std::array<std::array<int, 2>, 17> known = {{{1, 1},
                                                           {1, 1},
                                                           {12, 11},
                                                           {10, 11},
                                                           {16, 11},
                                                           {40, 33},
                                                           {24, 11},
                                                           {20, 11},
                                                           {32, 11},
                                                           {80, 33},
                                                           {18, 11},
                                                           {15, 11},
                                                           {64, 33},
                                                           {160, 99},
                                                           {4, 3},
                                                           {3, 2},
                                                           {2, 1}}};
    constexpr unsigned extended = 255;
    const unsigned code = reader.bits(8);
    if (code < known.size())
        return {known[code][0], known[code][1]};
    if (code != extended)
        return 1;
    const unsigned width = reader.bits(16);
    const unsigned height = reader.bits(16);
    return width != 0 && height != 0 ? Rational(width, height) : Rational(1);
}

} // namespace

std::optional<Rational> sampleAspectOfAvcC(std::span<const std::uint8_t> avcC) {
    constexpr std::size_t firstSet = 8; // behind version, profile, level, length size, count, length
    if (avcC.size() < firstSet || avcC[0] != 1 || (avcC[5] & 0x1FU) == 0)
        return std::nullopt;
    const std::size_t length = std::size_t{avcC[6]} << 8U | avcC[7];
    if (length < 4 || length > avcC.size() - firstSet)
        return std::nullopt;
    const std::vector<std::uint8_t> set = withoutEmulationPrevention(avcC.subspan(firstSet + 1, length - 1));
    BitReader reader(set);
    const unsigned profile = reader.bits(8);
    reader.bits(16); // constraints, level
    reader.golomb(); // seq_parameter_set_id
    skipChromaFormat(reader, profile);
    reader.golomb(); // log2_max_frame_num_minus4
    skipPictureOrder(reader);
    skipSize(reader);
    const bool hasAspect = reader.bit() != 0 && reader.bit() != 0;
    const Rational aspect = hasAspect ? readAspect(reader) : Rational(1);
    return reader.failed() ? std::nullopt : std::optional(aspect);
}

} // namespace EngineBackend
