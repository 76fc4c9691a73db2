#include "KestoRenderLib/BoxBlur.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace KestoRenderLib {

namespace {

using Bytes = std::vector<unsigned char>;

/// Sums of 2 * reach + 1 bytes become their average, rounded to nearest.
class Average {
public:
    explicit Average(int reach)
        : factor(((std::uint64_t{1} << shift) + static_cast<std::uint64_t>(reach)) /
                 (2 * static_cast<std::uint64_t>(reach) + 1)) {}

    unsigned char of(std::uint32_t sum) const {
        const std::uint64_t rounded = (sum * factor + (std::uint64_t{1} << (shift - 1))) >> shift;
        return static_cast<unsigned char>(std::min<std::uint64_t>(rounded, 255));
    }

private:
    static constexpr int shift = 32;
    std::uint64_t factor;
};

/// The samples of one line, each `step` bytes after the one before it.
class Line {
public:
    Line(const unsigned char* samples, std::ptrdiff_t stepBytes, int samplesCount, BlurEdge beyond)
        : first(samples)
        , step(stepBytes)
        , count(samplesCount)
        , edge(beyond) {}

    std::uint32_t at(int index) const {
        if (index >= 0 && index < count)
            return first[index * step];
        return edge == BlurEdge::Empty ? 0U : std::uint32_t{first[index < 0 ? 0 : (count - 1) * step]};
    }

private:
    const unsigned char* first;
    std::ptrdiff_t step;
    int count;
    BlurEdge edge;
};

void averageLine(const Line& line, int count, std::ptrdiff_t step, int reach, unsigned char* result) {
    const Average average(reach);
    std::uint32_t sum = 0;
    for (int index = -reach; index < reach; ++index)
        sum += line.at(index);
    for (int index = 0; index < count; ++index) {
        sum += line.at(index + reach);
        result[index * step] = average.of(sum);
        sum -= line.at(index - reach);
    }
}

void averageAcross(const BlurredPixels& picture, int reach, BlurEdge edge) {
    Bytes row(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels));
    for (int y = 0; y < picture.height; ++y) {
        unsigned char* pixels = picture.pixels + static_cast<std::ptrdiff_t>(picture.stride) * y;
        std::copy_n(pixels, row.size(), row.begin());
        for (int channel = 0; channel < picture.channels; ++channel)
            averageLine({row.data() + channel, picture.channels, picture.width, edge}, picture.width,
                        picture.channels, reach, pixels + channel);
    }
}

/// Row by row with one sum a column, which is several times faster than column by column.
void averageDown(const BlurredPixels& picture, int reach, BlurEdge edge) {
    const std::size_t rowBytes =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels);
    Bytes copy(rowBytes * static_cast<std::size_t>(picture.height));
    for (int y = 0; y < picture.height; ++y)
        std::copy_n(picture.pixels + static_cast<std::ptrdiff_t>(picture.stride) * y, rowBytes,
                    copy.begin() + static_cast<std::ptrdiff_t>(rowBytes) * y);
    std::vector<std::uint32_t> sums(rowBytes, 0);
    const auto change = [&](int y, bool adds) {
        if (edge == BlurEdge::Empty && (y < 0 || y >= picture.height))
            return;
        const unsigned char* row =
            copy.data() + static_cast<std::ptrdiff_t>(rowBytes) * std::clamp(y, 0, picture.height - 1);
        for (std::size_t byte = 0; byte < rowBytes; ++byte)
            sums[byte] = adds ? sums[byte] + row[byte] : sums[byte] - row[byte];
    };
    const Average average(reach);
    for (int y = -reach; y < reach; ++y)
        change(y, true);
    for (int y = 0; y < picture.height; ++y) {
        change(y + reach, true);
        unsigned char* row = picture.pixels + static_cast<std::ptrdiff_t>(picture.stride) * y;
        for (std::size_t byte = 0; byte < rowBytes; ++byte)
            row[byte] = average.of(sums[byte]);
        change(y - reach, false);
    }
}

} // namespace

void boxBlur(const BlurredPixels& picture, int radius, BlurEdge edge) {
    if (picture.width < 1 || picture.height < 1)
        return;
    for (int pass = 0; pass < 3; ++pass) {
        const int reach = (radius + pass) / 3;
        if (reach < 1)
            continue;
        averageAcross(picture, reach, edge);
        averageDown(picture, reach, edge);
    }
}

} // namespace KestoRenderLib
