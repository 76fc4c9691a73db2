#pragma once

#include "KestoRenderLib/project/PictureSource.h"

#include "platform/AnimatedGif.h"

#include <boost/rational.hpp>

#include <string>

namespace KestoRenderLib {

/// The frames of an animated GIF, by an open loader.
class GifSource : public IPictureSource {
public:
    /// Opens the file, whose `path` is UTF-8. What is no GIF has no size.
    explicit GifSource(const std::string& path);

    /// From now on, the picture is the frame that covers `time`, in seconds from the start.
    void setTime(const boost::rational<__int64>& time) { shown = time; }

    int frameCount() { return loader.GetFrameCount(); }
    /// Of one pass, in seconds; 0 without a file.
    boost::rational<__int64> duration() { return loader.GetDuration(); }
    /// Per second, on average; 0 without a file.
    boost::rational<__int64> frameRate();

    KestoRenderLib::Size size() const override { return {loader.GetWidth(), loader.GetHeight()}; }
    boost::shared_ptr<MetaBitmap> picture(const KestoRenderLib::Size& wanted) override;

private:
    FrameCodecLib::WICAnimatedGIFLoader loader;
    boost::rational<__int64> shown = 0;
};

} // namespace KestoRenderLib
