#pragma once

#include "framegrab/IFrameGrabber.h"
#include "platform/Export.h"
#include "platform/KestoMediaLib.h"
#include "platform/KestoRenderLib.h"
#include "platform/WinTypes.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>

namespace KestoThumbnailer {

/// Gives frames of one media, whatever its kind. How it does is chosen once: the media's file is decoded, the
/// callout drawn, or the media rendered in a small project of its own. One caller at a time, on any thread;
/// nobody may edit the media meanwhile.
class KESTO_EXPORT MediaFrameGrabber : public IFrameGrabber {
public:
    /// Throws std::invalid_argument for a media that has no picture of its own kind to give, an empty pointer
    /// among them, and for a callout without a drawing; std::runtime_error for a media on no track, and one
    /// whose track lies in no mixer, where a project is needed. What the libraries throw passes through.
    ///
    /// A file that cannot be decoded is no error here: its frames are empty.
    explicit MediaFrameGrabber(boost::shared_ptr<const KestoMediaLib::Media> media);
    ~MediaFrameGrabber() override;
    MediaFrameGrabber(const MediaFrameGrabber&) = delete;
    MediaFrameGrabber& operator=(const MediaFrameGrabber&) = delete;

    /// For a file, `time` is that of the file; for what is rendered, it counts from the media's start. A
    /// callout has one picture, at its own size: neither `time` nor `size` counts. Sound alone is always
    /// empty.
    boost::shared_ptr<KestoRenderLib::MetaBitmap>
    frameAtTime(boost::rational<__int64> time, bool keepOrientation, KestoRenderLib::Size size) override;

private:
    std::unique_ptr<IFrameGrabber> impl; // null where there is no picture
};

} // namespace KestoThumbnailer
