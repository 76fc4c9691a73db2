#include "engine/ffmpeg/ColorDescription.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/mastering_display_metadata.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>

namespace EngineBackend {

namespace {

/// The format without its promise of full range, which `AVFrame::color_range` can tell as well.
AVPixelFormat withoutRange(AVPixelFormat format) {
    switch (format) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    case AV_PIX_FMT_YUVJ440P:
        return AV_PIX_FMT_YUV440P;
    case AV_PIX_FMT_YUVJ411P:
        return AV_PIX_FMT_YUV411P;
    default:
        return format;
    }
}

int matrixOf(const AVFrame& frame) {
    constexpr int leastColumnsOf709 = 1280;
    constexpr int leastRowsOf709 = 720;
    switch (frame.colorspace) {
    case AVCOL_SPC_BT709:
        return SWS_CS_ITU709;
    case AVCOL_SPC_FCC:
        return SWS_CS_FCC;
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
        return SWS_CS_ITU601;
    case AVCOL_SPC_SMPTE240M:
        return SWS_CS_SMPTE240M;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return SWS_CS_BT2020;
    default:
        return frame.width >= leastColumnsOf709 || frame.height >= leastRowsOf709 ? SWS_CS_ITU709
                                                                                  : SWS_CS_ITU601;
    }
}

/// Of the content where it is told, else of the screen that it was made on; 0 where neither is.
double toldPeak(const AVFrame& frame) {
    const AVFrameSideData* content = av_frame_get_side_data(&frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL);
    if (content && content->size >= sizeof(AVContentLightMetadata))
        if (const unsigned peak = reinterpret_cast<const AVContentLightMetadata*>(content->data)->MaxCLL)
            return peak;
    const AVFrameSideData* screen = av_frame_get_side_data(&frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA);
    if (!screen || screen->size < sizeof(AVMasteringDisplayMetadata))
        return 0;
    const auto* display = reinterpret_cast<const AVMasteringDisplayMetadata*>(screen->data);
    return display->has_luminance != 0 && display->max_luminance.den > 0 ? av_q2d(display->max_luminance) : 0;
}

} // namespace

ColorDescription describeColors(const AVFrame& frame) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    const AVPixelFormat plain = withoutRange(format);
    return {.format = plain,
            .matrix = matrixOf(frame),
            .isFullRange = plain != format || frame.color_range == AVCOL_RANGE_JPEG};
}

std::optional<HdrDescription> describeHdr(const AVFrame& frame) {
    constexpr double usualPeak = 1000;
    constexpr double leastPeak = 100;
    constexpr double greatestPeak = 10000;
    if (frame.color_trc != AVCOL_TRC_SMPTE2084 && frame.color_trc != AVCOL_TRC_ARIB_STD_B67)
        return std::nullopt;
    const bool isPq = frame.color_trc == AVCOL_TRC_SMPTE2084;
    const double peak = isPq ? toldPeak(frame) : 0;
    return HdrDescription{.transfer = isPq ? HdrTransfer::Pq : HdrTransfer::Hlg,
                          .peak = peak > 0 ? std::clamp(peak, leastPeak, greatestPeak) : usualPeak,
                          .isBt2020 = frame.color_primaries != AVCOL_PRI_BT709};
}

bool hasAlpha(const AVFrame& frame) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return format && (format->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

} // namespace EngineBackend
