#include "gdiplus/scaling/scaler/PlanarResampler.h"

#include "gdiplus/scaling/scaler/Axis.h"
#include "gdiplus/scaling/scaler/EdgeRow.h"
#include "gdiplus/scaling/scaler/PlaneGraph.h"
#include "gdiplus/scaling/scaler/PlaneRows.h"

#include <zimg.h>

#include <array>
#include <new>

namespace GdiplusBackend::Scaling {

namespace {

constexpr std::size_t alignment = 64;

constexpr std::size_t aligned(std::size_t bytes) {
    return (bytes + alignment - 1) / alignment * alignment;
}

struct AlignedDeleter {
    void operator()(std::byte* memory) const { ::operator delete (memory, std::align_val_t{alignment}); }
};
using AlignedMemory = std::unique_ptr<std::byte, AlignedDeleter>;

AlignedMemory allocateAligned(std::size_t bytes) {
    return AlignedMemory(
        static_cast<std::byte*>(::operator new (aligned(bytes), std::align_val_t{alignment})));
}

/// The rows of all planes that zimg needs at a time, as a ring.
class PlaneRing {
public:
    PlaneRing(int width, int height, unsigned lines, Opacity opacity)
        : stride(aligned(static_cast<std::size_t>(width) * sizeof(std::uint16_t)))
        , mask(zimg_select_buffer_mask(lines))
        , planeBytes(stride *
                     (mask == ZIMG_BUFFER_MAX ? static_cast<std::size_t>(height) : mask + std::size_t{1}))
        , planes(opacity == Opacity::Transparent ? 4 : 3)
        , memory(allocateAligned(planeBytes * planes)) {}

    PlaneRow row(unsigned y) const {
        return {sample(0, y), sample(1, y), sample(2, y), planes == 4 ? sample(3, y) : nullptr};
    }

    template <typename Buffer>
    Buffer describe() const {
        Buffer buffer = {};
        buffer.version = ZIMG_API_VERSION;
        for (std::size_t plane = 0; plane < planes; ++plane) {
            buffer.plane[plane].data = memory.get() + plane * planeBytes;
            buffer.plane[plane].stride = static_cast<std::ptrdiff_t>(stride);
            buffer.plane[plane].mask = mask;
        }
        return buffer;
    }

private:
    std::uint16_t* sample(std::size_t plane, unsigned y) const {
        return reinterpret_cast<std::uint16_t*>(memory.get() + plane * planeBytes + stride * (y & mask));
    }

    std::size_t stride;
    unsigned mask;
    std::size_t planeBytes;
    std::size_t planes;
    AlignedMemory memory;
};

struct Unpacking {
    const ConstPixelView* source;
    int left; ///< source column of the window's first one
    int top;
    const PlaneRing* ring;
};

struct Packing {
    const PixelView* target;
    const PlaneRing* ring;
};

int unpackRow(void* user, unsigned y, unsigned left, unsigned right) noexcept {
    const auto& work = *static_cast<const Unpacking*>(user);
    const auto first = static_cast<int>(left);
    const EdgeRow row = edgeRow(*work.source, work.top + static_cast<int>(y), work.left + first,
                                static_cast<int>(right) - first);
    const PlaneRow planes = work.ring->row(y) + first;
    fillPixels(row.leftmost, row.before, planes);
    splitPixels(row.pixels, row.inside, planes + row.before);
    fillPixels(row.rightmost, row.after, planes + (row.before + row.inside));
    return 0;
}

int packRow(void* user, unsigned y, unsigned left, unsigned right) noexcept {
    const auto& work = *static_cast<const Packing*>(user);
    const auto first = static_cast<int>(left);
    joinPixels(work.ring->row(y) + first, static_cast<int>(right) - first,
               work.target->row(static_cast<int>(y)) + first * bytesPerPixel);
    return 0;
}

/// The source pixels of one direction that zimg is given: wide enough that its own rule for borders, which
/// mirrors, never shows.
struct Window {
    int first;
    int length;
};

Window windowFor(const Axis& axis, Kernel kernel) {
    const int reach = kernelReach(kernel, axis);
    const int first = static_cast<int>(std::floor(axis.start)) - reach;
    return {first, static_cast<int>(std::ceil(axis.start + axis.length)) + reach - first};
}

struct Buffering {
    unsigned inputLines = 0;
    unsigned outputLines = 0;
    std::size_t temporaryBytes = 0;
};

Result<Buffering> bufferingOf(const zimg_filter_graph* graph) {
    Buffering needs;
    if (zimg_filter_graph_get_input_buffering(graph, &needs.inputLines) != ZIMG_ERROR_SUCCESS ||
        zimg_filter_graph_get_output_buffering(graph, &needs.outputLines) != ZIMG_ERROR_SUCCESS ||
        zimg_filter_graph_get_tmp_size(graph, &needs.temporaryBytes) != ZIMG_ERROR_SUCCESS)
        return tl::unexpected(zimgError("measuring"));
    return needs;
}

bool canResample(const Axis& axis, Kernel kernel) {
    return axis.isCopy() || std::min(axis.length, static_cast<double>(axis.target)) > kernelRadius(kernel);
}

} // namespace

bool canResamplePlanar(const ScaleRequest& request, const PixelView& target) {
    return canResample(horizontalAxis(request, target), request.kernel) &&
           canResample(verticalAxis(request, target), request.kernel);
}

Result<void> resamplePlanar(const ScaleRequest& request, const PixelView& target) {
    const Window across = windowFor(horizontalAxis(request, target), request.kernel);
    const Window down = windowFor(verticalAxis(request, target), request.kernel);
    const Region active = {request.region.x - across.first, request.region.y - down.first,
                           request.region.width, request.region.height};
    const Result<const zimg_filter_graph*> graph = graphFor(
        {across.length, down.length, active, target.width, target.height, request.kernel, request.opacity});
    if (!graph)
        return tl::unexpected(graph.error());
    const Result<Buffering> needs = bufferingOf(*graph);
    if (!needs)
        return tl::unexpected(needs.error());

    const PlaneRing input(across.length, down.length, needs->inputLines, request.opacity);
    const PlaneRing output(target.width, target.height, needs->outputLines, request.opacity);
    const AlignedMemory temporary = allocateAligned(needs->temporaryBytes);
    const auto from = input.describe<zimg_image_buffer_const>();
    const auto to = output.describe<zimg_image_buffer>();
    Unpacking unpacking = {&request.source, across.first, down.first, &input};
    Packing packing = {&target, &output};
    if (zimg_filter_graph_process(*graph, &from, &to, temporary.get(), unpackRow, &unpacking, packRow,
                                  &packing) != ZIMG_ERROR_SUCCESS)
        return tl::unexpected(zimgError("computing"));
    return {};
}

} // namespace GdiplusBackend::Scaling
