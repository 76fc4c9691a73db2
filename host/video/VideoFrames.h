#pragma once

#include "Arguments.h"
#include "Report.h"
#include "video/ModelTime.h"

#include <KestoThumbnailer/platform/FrameCodecLib.h>
#include <KestoThumbnailer/platform/KestoRenderLib.h>

#include <memory>
#include <string>

namespace KestoHost {

/// The size of the thumbnail that a picture of that size has within bounds: never larger than the picture.
KestoRenderLib::Size thumbnailSizeOf(const KestoRenderLib::Size& picture, const Bounds& bounds);

/// The frames of one stream of a video, straight from its decoder. One thread at a time.
class VideoFrames {
public:
    struct Opened {
        std::unique_ptr<VideoFrames> frames; ///< null: see `failure`
        Failure failure;
    };

    /// `input` is a name in UTF-8; stream -1 is the one that a player would show.
    static Opened open(const std::string& input, int stream);

    /// A day, where the file does not tell.
    ModelTime duration() const;
    /// Upright and of square pixels.
    KestoRenderLib::Size size() const;
    /// Per second, on average; 0 when the file does not tell.
    boost::rational<__int64> frameRate() const { return decoder->GetFrameRate(); }

    struct Frame {
        boost::shared_ptr<KestoRenderLib::MetaBitmap>
            bitmap; ///< for reading alone; it may outlive the decoder
        FrameCodecLib::FrameTiming timing;
    };

    /// The frame whose interval covers `time`, scaled to `wanted` as it is decoded, without a picture of its
    /// full size in between. Empty when nothing can be shown.
    Frame frameAt(ModelTime time, const KestoRenderLib::Size& wanted);

private:
    explicit VideoFrames(std::unique_ptr<FrameCodecLib::Decoder> opened)
        : decoder(std::move(opened)) {}

    std::unique_ptr<FrameCodecLib::Decoder> decoder;
};

} // namespace KestoHost
