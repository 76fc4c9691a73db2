#include "gdiplus/encoders/colorquantizer/PaletteFitter.h"

#include "gdiplus/encoders/colorquantizer/NearestColor.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace GdiplusBackend {

namespace {

constexpr std::size_t channelCount = 3;
constexpr std::size_t sliceCount = 64;
constexpr int rounds = 3; // more move the entries by less than a level

Gdiplus::ARGB meanColor(const ColorBin& bin) {
    std::array<BYTE, channelCount> mean;
    for (std::size_t channel = 0; channel < channelCount; ++channel)
        mean[channel] = static_cast<BYTE>(std::lround(bin.mean(channel)));
    return Gdiplus::Color::MakeARGB(255, mean[0], mean[1], mean[2]);
}

ColorBin without(ColorBin total, const ColorBin& part) {
    total.count -= part.count;
    for (std::size_t channel = 0; channel < channelCount; ++channel)
        total.sums[channel] -= part.sums[channel];
    return total;
}

/// Squared length of the sums over the count. What the halves of a box have more of this than the whole is
/// by how much the split lowers the squared error.
double energy(const ColorBin& bin) {
    double sum = 0;
    for (const double channelSum : bin.sums)
        sum += channelSum * channelSum;
    return sum / bin.count;
}

/// A range of means cut into slices of equal width.
class Slices {
public:
    Slices() = default;
    Slices(double lowestMean, double highestMean)
        : lowest(lowestMean)
        , slicesPerLevel(highestMean > lowestMean ? (sliceCount - 1) / (highestMean - lowestMean) : 0) {}

    std::size_t sliceOf(double mean) const {
        return static_cast<std::size_t>((mean - lowest) * slicesPerLevel);
    }

private:
    double lowest = 0;
    double slicesPerLevel = 0;
};

/// Bins that share an entry, and the best way to divide them in two.
struct Box {
    std::span<ColorBin> bins;
    double gain = 0; ///< 0: can't be divided
    std::size_t channel = 0;
    Slices slices = {};
    std::size_t firstUpperSlice = 0;

    bool isLower(const ColorBin& bin) const { return slices.sliceOf(bin.mean(channel)) < firstUpperSlice; }
};

Slices slicesAlong(std::span<const ColorBin> bins, std::size_t channel) {
    double lowest = 255;
    double highest = 0;
    for (const ColorBin& bin : bins) {
        lowest = std::min(lowest, bin.mean(channel));
        highest = std::max(highest, bin.mean(channel));
    }
    return {lowest, highest};
}

/// The best division along one channel.
Box divideAlong(std::span<ColorBin> bins, std::size_t channel) {
    Box best{bins};
    best.channel = channel;
    best.slices = slicesAlong(bins, channel);
    std::array<ColorBin, sliceCount> sums{};
    ColorBin whole;
    for (const ColorBin& bin : bins) {
        whole.add(bin);
        sums[best.slices.sliceOf(bin.mean(channel))].add(bin);
    }
    ColorBin lower;
    for (std::size_t slice = 1; slice < sliceCount; ++slice) {
        lower.add(sums[slice - 1]);
        const ColorBin upper = without(whole, lower);
        if (lower.count == 0 || upper.count == 0)
            continue;
        const double gain = energy(lower) + energy(upper) - energy(whole);
        if (gain > best.gain) {
            best.gain = gain;
            best.firstUpperSlice = slice;
        }
    }
    return best;
}

Box makeBox(std::span<ColorBin> bins) {
    Box best = divideAlong(bins, 0);
    for (std::size_t channel = 1; channel < channelCount; ++channel) {
        const Box other = divideAlong(bins, channel);
        if (other.gain > best.gain)
            best = other;
    }
    return best;
}

std::vector<Box> divide(std::span<ColorBin> bins, std::size_t boxCount) {
    std::vector<Box> boxes{makeBox(bins)};
    while (boxes.size() < boxCount) {
        Box& widest = *std::ranges::max_element(boxes, {}, &Box::gain);
        if (widest.gain <= 0)
            break;
        const Box box = widest;
        const auto firstUpper = std::partition(box.bins.begin(), box.bins.end(),
                                               [&](const ColorBin& bin) { return box.isLower(bin); });
        const auto lowerCount = static_cast<std::size_t>(firstUpper - box.bins.begin());
        widest = makeBox(box.bins.first(lowerCount));
        boxes.push_back(makeBox(box.bins.subspan(lowerCount)));
    }
    return boxes;
}

/// One round of Lloyd's algorithm.
void moveToMeans(std::vector<Gdiplus::ARGB>& palette, std::span<const ColorBin> bins) {
    const NearestColor nearest(palette);
    std::vector<ColorBin> clusters(palette.size());
    for (const ColorBin& bin : bins)
        clusters[nearest.indexFor(meanColor(bin))].add(bin);
    for (std::size_t entry = 0; entry < palette.size(); ++entry)
        if (clusters[entry].count > 0)
            palette[entry] = meanColor(clusters[entry]);
}

} // namespace

std::vector<Gdiplus::ARGB> fitPalette(std::span<const ColorBin> bins, std::size_t size) {
    std::vector<ColorBin> sorted(bins.begin(), bins.end());
    std::vector<Gdiplus::ARGB> palette;
    for (const Box& box : divide(sorted, size)) {
        ColorBin whole;
        for (const ColorBin& bin : box.bins)
            whole.add(bin);
        palette.push_back(meanColor(whole));
    }
    for (int round = 0; round < rounds; ++round)
        moveToMeans(palette, bins);
    return palette;
}

} // namespace GdiplusBackend
