#pragma once

#include "Report.h"
#include "video/FrameClock.h"

#include <KestoThumbnailer/ProjectFrameGrabber.h>

#include <memory>
#include <string>

namespace KestoHost {

/// The frames of a video or a project by their times. One thread at a time; the process must have started
/// GDI+.
class TimedFrames {
public:
    struct Opened {
        std::unique_ptr<TimedFrames> frames; ///< null: see `failure`
        Failure failure;
    };

    /// `input` is a name in UTF-8 that `refusalOf` has nothing against.
    static Opened open(const std::string& input);

    /// The first moment in which nothing plays any more.
    ModelTime duration() const { return end; }
    /// In pixels.
    KestoRenderLib::Size canvas() const { return size; }
    /// Of a project its own frames; of media its moments in model time, so that any frame of it can be asked
    /// for, however irregular its frames are.
    const FrameClock& clock() const { return frameClock; }

    /// Whether it is a document of the editor; any other input is media.
    bool isProject() const { return !emptyIsHole; }

    /// What is shown at `time`, a frame of its own at the size of the canvas. Empty when nothing can be
    /// shown.
    boost::shared_ptr<KestoRenderLib::MetaBitmap> frameAt(ModelTime time);

    /// The part of the canvas at `source`, in pixels from its top left corner, filling `target` pixels. What
    /// lies outside the canvas is drawn half transparent. The caller owns the bitmap; null as above. Requires
    /// `target` to be within `largestView`, and no `frameAt` before it: that leaves a screen of another size.
    std::unique_ptr<Gdiplus::Bitmap> viewAt(ModelTime time, const KestoMediaLib::Rect<double>& source,
                                            const KestoRenderLib::Size& target);

    /// Views are cut out of what the renderer draws on a screen of this size.
    static constexpr KestoRenderLib::Size largestView{3840, 2160};

private:
    TimedFrames(const boost::shared_ptr<const KestoMediaLib::Project>& project, bool isMedia);

    KestoThumbnailer::ProjectFrameGrabber grabber;
    FrameClock frameClock;
    ModelTime end;
    KestoRenderLib::Size size;
    bool emptyIsHole; // in a project, a moment in which nothing plays is a picture like others
};

} // namespace KestoHost
