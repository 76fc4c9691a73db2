#include "engine/ffmpeg/UnscaledColors.h"

#include "engine/ffmpeg/ColorDescription.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cstddef>
#include <vector>

namespace EngineBackend {

namespace {

// Loops over rows of 16-bit integers, which compilers turn into vector instructions.
using Row = std::vector<std::int16_t>;

/// Quarters of the chroma samples around a luma sample: before and at an even one, at and behind an odd one.
struct Siting {
    int before;
    int atEven;
    int atOdd;
    int behind;
};
constexpr Siting onEvenSamples = {0, 4, 2, 2};
constexpr Siting betweenSamples = {1, 3, 3, 1};

/// ITU-T H.264, figure E-1: without a word chroma lies on the even columns, between the rows.
Siting acrossOf(AVChromaLocation location) {
    const bool isBetween =
        location == AVCHROMA_LOC_CENTER || location == AVCHROMA_LOC_TOP || location == AVCHROMA_LOC_BOTTOM;
    return isBetween ? betweenSamples : onEvenSamples;
}

Siting downOf(AVChromaLocation location) {
    const bool isOnRows = location == AVCHROMA_LOC_TOPLEFT || location == AVCHROMA_LOC_TOP;
    return isOnRows ? onEvenSamples : betweenSamples;
}

constexpr int fractionBits = 4; ///< of colours before they are rounded

/// Factors with 13 bits behind the point.
struct Factors {
    std::int16_t luma;
    std::int16_t redOfV;
    std::int16_t blueOfU;
    std::int16_t greenOfU;
    std::int16_t greenOfV;
    int black; ///< the luma sample that is black
};

Factors factorsOf(const ColorDescription& colors) {
    constexpr int scalerBits = 16;
    constexpr int bits = 13;
    const int* table = sws_getCoefficients(colors.matrix); // of limited range
    const auto factor = [&](int value, int numerator, int denominator) {
        return static_cast<std::int16_t>(static_cast<std::int64_t>(value) * numerator / denominator >>
                                         (scalerBits - bits));
    };
    const auto chroma = [&](int value) {
        return colors.isFullRange ? factor(value, 224, 255) : factor(value, 1, 1);
    };
    return {.luma = colors.isFullRange ? factor(1 << scalerBits, 1, 1) : factor(1 << scalerBits, 255, 219),
            .redOfV = chroma(table[0]),
            .blueOfU = chroma(table[1]),
            .greenOfU = chroma(table[2]),
            .greenOfV = chroma(table[3]),
            .black = colors.isFullRange ? 0 : 16};
}

/// One plane of chroma, with as many columns and rows as luma.
class Chroma {
public:
    Chroma(const AVFrame& source, int sourcePlane)
        : frame(source)
        , plane(sourcePlane)
        , columns((source.width + 1) / 2)
        , rows((source.height + 1) / 2)
        , halved(static_cast<std::size_t>(columns) + 2)
        , whole(static_cast<std::size_t>(columns) * 2) {}

    /// Of luma's row `y`: samples above and below the middle, 128 times as large as they are.
    const std::int16_t* row(int y, const Siting& across, const Siting& down) {
        const int at = y / 2;
        const bool isEven = y % 2 == 0;
        const std::uint8_t* one = sourceRow(isEven ? at - 1 : at);
        const std::uint8_t* other = sourceRow(isEven ? at : at + 1);
        blend(one, other, isEven ? down.before : down.atOdd, isEven ? down.atEven : down.behind);
        widen(across);
        return whole.data();
    }

private:
    const std::uint8_t* sourceRow(int y) const {
        return frame.data[plane] + std::ptrdiff_t{std::clamp(y, 0, rows - 1)} * frame.linesize[plane];
    }

    /// Into `halved`, 4 times as large, with the outer samples repeated.
    void blend(const std::uint8_t* one, const std::uint8_t* other, int ofOne, int ofOther) {
        constexpr int middle = 4 * 128;
        std::int16_t* to = halved.data() + 1;
        for (int x = 0; x < columns; ++x)
            to[x] = static_cast<std::int16_t>(one[x] * ofOne + other[x] * ofOther - middle);
        halved.front() = to[0];
        to[columns] = to[columns - 1];
    }

    void widen(const Siting& across) {
        constexpr int scale = 8; // 4 of the rows and 4 of the columns make 128
        const std::int16_t* from = halved.data() + 1;
        std::int16_t* to = whole.data();
        for (std::ptrdiff_t x = 0; x < columns; ++x) {
            to[2 * x] =
                static_cast<std::int16_t>((from[x - 1] * across.before + from[x] * across.atEven) * scale);
            to[2 * x + 1] =
                static_cast<std::int16_t>((from[x] * across.atOdd + from[x + 1] * across.behind) * scale);
        }
    }

    const AVFrame& frame;
    int plane;
    int columns;
    int rows;
    Row halved;
    Row whole;
};

std::int16_t product(std::int16_t sample, std::int16_t factor) {
    return static_cast<std::int16_t>(sample * factor >> 16);
}

std::uint32_t level(int color) {
    constexpr int half = 1 << (fractionBits - 1);
    return static_cast<std::uint32_t>(std::clamp((color + half) >> fractionBits, 0, 255));
}

void convertRow(const std::uint8_t* luma, const std::int16_t* u, const std::int16_t* v,
                const Factors& factors, int width, std::uint32_t* pixels) {
    constexpr int scale = 128; // as chroma has it
    constexpr std::uint32_t opaque = 0xFF000000;
    for (int x = 0; x < width; ++x) {
        const int y = product(static_cast<std::int16_t>((luma[x] - factors.black) * scale), factors.luma);
        const std::uint32_t red = level(y + product(v[x], factors.redOfV));
        const std::uint32_t green =
            level(y - product(u[x], factors.greenOfU) - product(v[x], factors.greenOfV));
        const std::uint32_t blue = level(y + product(u[x], factors.blueOfU));
        pixels[x] = opaque | red << 16U | green << 8U | blue;
    }
}

} // namespace

bool canConvertUnscaled(const AVFrame& frame, const ColorDescription& colors) {
    return colors.format == AV_PIX_FMT_YUV420P && frame.width > 0 && frame.height > 0;
}

void convertUnscaled(const AVFrame& frame, const ColorDescription& colors, std::uint8_t* pixels) {
    const Factors factors = factorsOf(colors);
    const Siting across = acrossOf(frame.chroma_location);
    const Siting down = downOf(frame.chroma_location);
    Chroma u(frame, 1);
    Chroma v(frame, 2);
    auto* row = reinterpret_cast<std::uint32_t*>(pixels);
    for (int y = 0; y < frame.height; ++y, row += frame.width)
        convertRow(frame.data[0] + std::ptrdiff_t{y} * frame.linesize[0], u.row(y, across, down),
                   v.row(y, across, down), factors, frame.width, row);
}

} // namespace EngineBackend
