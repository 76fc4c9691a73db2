#include "gdiplus/scaling/scaler/Reduction.h"

#include "gdiplus/scaling/BoxReducer.h"
#include "gdiplus/scaling/scaler/Axis.h"
#include "gdiplus/scaling/scaler/EdgeRow.h"

#include <cstring>
#include <utility>

namespace GdiplusBackend::Scaling {

namespace {

constexpr int samplesPerPixel = 4;
constexpr double leastReducedStep = 4;
constexpr double leastStepForKernel = 2;

/// The blocks of one direction, equally far apart. Blocks that reach beyond the picture repeat its edge.
struct Blocks {
    int first = 0;  ///< source pixel
    int factor = 1; ///< source pixels in a block
    int count = 0;

    /// The blocks that lie wholly inside the picture: from here to before `insideEnd`.
    int insideBegin() const { return first < 0 ? std::min(reducedLength(-first, factor), count) : 0; }
    int insideEnd(int sourceLength) const {
        return std::clamp((sourceLength - first) / factor, insideBegin(), count);
    }
    double toReduced(double position) const { return (position - first) / factor; }
};

int maxFactor(const Axis& axis) {
    return axis.step() >= leastReducedStep ? static_cast<int>(axis.step() / leastStepForKernel) : 1;
}

/// The source pixels from `first` to before `end` for the region and for what the kernel may read around it.
/// Beyond the picture only the region itself counts: there the kernel may repeat the outermost block, which
/// is quieter than a repeated pixel.
std::pair<int, int> pixelsInReach(const Axis& axis, Kernel kernel, int factor, int sourceLength) {
    const Axis reduced = {axis.start / factor, axis.length / factor, axis.target};
    const double reach = static_cast<double>(kernelReach(kernel, reduced)) * factor;
    const double regionFirst = std::floor(axis.start);
    const double regionEnd = std::ceil(axis.start + axis.length);
    const double first = std::min(regionFirst, std::max(regionFirst - reach, 0.0));
    const double end = std::max(regionEnd, std::min(regionEnd + reach, sourceLength + 0.0));
    return {static_cast<int>(first), static_cast<int>(end)};
}

/// A factor not much below `largest` whose last block reaches little beyond `length`.
int factorOfLittleRest(int length, int largest) {
    const auto rest = [length](int factor) {
        return static_cast<double>(reducedLength(length, factor)) * factor - length;
    };
    // The smallest blocks that need no more of them.
    const int balanced = reducedLength(length, reducedLength(length, largest));
    int best = balanced;
    for (int factor = balanced; factor >= 2 && factor * 4 >= balanced * 3 && rest(best) > 0; --factor)
        if (rest(factor) / factor < rest(best) / best)
            best = factor;
    return best;
}

Blocks chooseBlocks(const Axis& axis, Kernel kernel, int sourceLength) {
    const int largest = maxFactor(axis);
    const auto [first, end] = pixelsInReach(axis, kernel, largest, sourceLength);
    const int factor = factorOfLittleRest(end - first, largest);
    return {first, factor, reducedLength(end - first, factor)};
}

/// Averages the blocks of one source into rows of its own.
class BlockAverager {
public:
    BlockAverager(const ConstPixelView& picture, const Blocks& blocksAcross, const Blocks& blocksDown)
        : source(picture)
        , across(blocksAcross)
        , down(blocksDown)
        , reduced(static_cast<std::size_t>(across.count * bytesPerPixel * down.count)) {}

    std::vector<std::byte> run() {
        const int insideBegin = across.insideBegin();
        const int insideEnd = across.insideEnd(source.width);
        reduceColumns(0, insideBegin);
        reduceColumns(insideBegin, insideEnd);
        reduceColumns(insideEnd, across.count);
        return std::move(reduced);
    }

private:
    /// Rows that lie inside the picture are read where they are.
    void reduceColumns(int firstBlock, int endBlock) {
        if (firstBlock == endBlock)
            return;
        const int left = across.first + firstBlock * across.factor;
        const int width = (endBlock - firstBlock) * across.factor;
        const int height = down.count * down.factor;
        const std::size_t rowBytes = static_cast<std::size_t>(width * bytesPerPixel);
        std::byte* out = reduced.data() + firstBlock * bytesPerPixel;
        BoxReducer reducer(width, height, samplesPerPixel, across.factor, down.factor,
                           [&out, this](std::span<const std::byte> averages) {
                               std::memcpy(out, averages.data(), averages.size());
                               out += across.count * bytesPerPixel;
                           });
        std::vector<std::byte> repeated;
        for (int y = 0; y < height; ++y) {
            const EdgeRow row = edgeRow(source, down.first + y, left, width);
            if (row.inside < width) {
                repeated.resize(rowBytes);
                copyEdgeRow(row, repeated.data());
            }
            reducer.putRow({repeated.empty() ? row.pixels : repeated.data(), rowBytes});
        }
    }

    ConstPixelView source;
    Blocks across;
    Blocks down;
    std::vector<std::byte> reduced;
};

} // namespace

std::optional<ReducedSource> reduceSource(const ScaleRequest& request, const PixelView& target) {
    const Axis horizontal = horizontalAxis(request, target);
    const Axis vertical = verticalAxis(request, target);
    if (maxFactor(horizontal) == 1 && maxFactor(vertical) == 1)
        return std::nullopt;
    const Blocks across = chooseBlocks(horizontal, request.kernel, request.source.width);
    const Blocks down = chooseBlocks(vertical, request.kernel, request.source.height);

    ReducedSource result = {BlockAverager(request.source, across, down).run(), request};
    result.request.source = {.top = result.pixels.data(),
                             .stride = across.count * bytesPerPixel,
                             .width = across.count,
                             .height = down.count,
                             .format = request.source.format};
    result.request.region = {across.toReduced(request.region.x), down.toReduced(request.region.y),
                             request.region.width / across.factor, request.region.height / down.factor};
    return result;
}

} // namespace GdiplusBackend::Scaling
