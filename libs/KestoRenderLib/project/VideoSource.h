#pragma once

#include "KestoRenderLib/project/PictureSource.h"

#include "platform/FrameCodecLib.h"

#include <boost/rational.hpp>

#include <memory>
#include <string>

namespace KestoRenderLib {

/// The frames of one stream of a video file, by an open decoder.
class VideoSource : public IPictureSource {
public:
    /// Opens the file, whose `path` is UTF-8. What can't be decoded has no size.
    VideoSource(const std::string& path, int streamIndex);

    /// From now on, the picture is the frame that covers `time`, in seconds from the stream's start.
    void setTime(const boost::rational<__int64>& time) { shown = time; }

    /// In seconds; 0 when it is not known.
    boost::rational<__int64> duration() const;
    /// Per second, on average; 0 when it is not known.
    boost::rational<__int64> frameRate() const;

    KestoRenderLib::Size size() const override { return display; }
    boost::shared_ptr<MetaBitmap> picture(const KestoRenderLib::Size& wanted) override;

private:
    std::unique_ptr<FrameCodecLib::Decoder> decoder;
    KestoRenderLib::Size display;
    boost::rational<__int64> shown = 0;
};

} // namespace KestoRenderLib
