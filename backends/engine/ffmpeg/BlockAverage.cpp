#include "engine/ffmpeg/BlockAverage.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace EngineBackend {

namespace {

/// Every sum of this many samples in a column fits its type.
constexpr int largestFactor = 128;

int bytesPerSample(const AVPixFmtDescriptor& format) {
    return (format.comp[0].depth + 7) / 8;
}

/// Whether each component has a plane of its own, of samples in this machine's order.
bool isPlanar(const AVPixFmtDescriptor& format) {
    constexpr std::uint64_t others = AV_PIX_FMT_FLAG_BE | AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM |
                                     AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_FLOAT;
    if ((format.flags & others) != 0 || format.comp[0].depth > 16)
        return false;
    for (int i = 0; i < format.nb_components; ++i) {
        const AVComponentDescriptor& component = format.comp[i];
        if (component.step != bytesPerSample(format) || component.offset != 0 || component.shift != 0 ||
            component.depth != format.comp[0].depth)
            return false;
    }
    return av_pix_fmt_count_planes(av_pix_fmt_desc_get_id(&format)) == format.nb_components;
}

struct PlaneShape {
    int width = 0;
    int height = 0;
};

PlaneShape planeShape(const AVFrame& frame, const AVPixFmtDescriptor& format, int plane) {
    const bool isChroma = plane == 1 || plane == 2;
    const int across = isChroma && (format.flags & AV_PIX_FMT_FLAG_RGB) == 0 ? format.log2_chroma_w : 0;
    const int down = isChroma && (format.flags & AV_PIX_FMT_FLAG_RGB) == 0 ? format.log2_chroma_h : 0;
    return {AV_CEIL_RSHIFT(frame.width, across), AV_CEIL_RSHIFT(frame.height, down)};
}

bool divides(int factor, const AVFrame& frame, const AVPixFmtDescriptor& format) {
    for (int plane = 0; plane < format.nb_components; ++plane) {
        const PlaneShape shape = planeShape(frame, format, plane);
        if (shape.width % factor != 0 || shape.height % factor != 0)
            return false;
    }
    return true;
}

/// The length of a block's side; 1 where there are none.
int factorFor(const AVFrame& frame, const AVPixFmtDescriptor& format, PictureSize wanted) {
    int factor =
        std::min({frame.width / (2 * wanted.width), frame.height / (2 * wanted.height), largestFactor});
    while (factor > 1 && !divides(factor, frame, format))
        --factor;
    return std::max(factor, 1);
}

template <class Sample, class Sum>
void averagePlane(const AVFrame& frame, AVFrame& smaller, int plane, const PlaneShape& shape, int factor) {
    const float share = 1.0F / static_cast<float>(factor * factor);
    const auto columns = static_cast<std::size_t>(shape.width);
    std::vector<Sum> sums(columns);
    for (int row = 0; row < shape.height / factor; ++row) {
        std::fill(sums.begin(), sums.end(), Sum{0});
        for (int y = row * factor; y < (row + 1) * factor; ++y) {
            const auto* from = reinterpret_cast<const Sample*>(frame.data[plane] +
                                                               std::ptrdiff_t{y} * frame.linesize[plane]);
            for (std::size_t x = 0; x < columns; ++x)
                sums[x] = static_cast<Sum>(sums[x] + from[x]);
        }
        auto* to =
            reinterpret_cast<Sample*>(smaller.data[plane] + std::ptrdiff_t{row} * smaller.linesize[plane]);
        const Sum* column = sums.data();
        for (int x = 0; x < shape.width / factor; ++x) {
            std::uint32_t sum = 0;
            for (int i = 0; i < factor; ++i)
                sum += *column++;
            to[x] = static_cast<Sample>(static_cast<float>(sum) * share + 0.5F);
        }
    }
}

} // namespace

const AVFrame& BlockAverage::reduced(const AVFrame& frame, PictureSize wanted) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (!format || !isPlanar(*format))
        return frame;
    const int factor = factorFor(frame, *format, wanted);
    if (factor == 1 || !makeRoom(frame, factor))
        return frame;
    for (int plane = 0; plane < format->nb_components; ++plane) {
        const PlaneShape shape = planeShape(frame, *format, plane);
        if (bytesPerSample(*format) == 1)
            averagePlane<std::uint8_t, std::uint16_t>(frame, *smaller, plane, shape, factor);
        else
            averagePlane<std::uint16_t, std::uint32_t>(frame, *smaller, plane, shape, factor);
    }
    return *smaller;
}

bool BlockAverage::makeRoom(const AVFrame& frame, int factor) {
    const int width = frame.width / factor;
    const int height = frame.height / factor;
    if (smaller && smaller->width == width && smaller->height == height && smaller->format == frame.format)
        return true;
    smaller = makeFrame();
    smaller->width = width;
    smaller->height = height;
    smaller->format = frame.format;
    if (av_frame_get_buffer(smaller.get(), 0) >= 0)
        return true;
    smaller.reset();
    return false;
}

} // namespace EngineBackend
