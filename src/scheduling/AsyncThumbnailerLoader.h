#pragma once

#include "framegrab/IFrameGrabber.h"
#include "platform/CommandQueueThread.h"
#include "platform/Export.h"
#include "platform/KestoRenderLib.h"
#include "platform/WinTypes.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

#include <functional>
#include <memory>

namespace KestoThumbnailer {

/// Grabs frames on a thread of its own, one at a time, in the order in which they were asked for; none is
/// left out for a later one.
///
/// Any thread may ask. Nothing is caught on that thread: what the grabber or a callback throws ends the
/// process. Requires: not destroyed by a callback. Guarantees: the destructor drops the requests that have
/// not begun and waits for the one that runs; once it has returned no callback runs.
class KESTO_EXPORT AsyncThumbnailerLoader {
public:
    /// The grabber is called, from now on, by the loader's thread alone.
    explicit AsyncThumbnailerLoader(std::unique_ptr<IFrameGrabber> frameGrabber);

    /// Asks for the frame that `IFrameGrabber::frameAtTime` gives for these arguments, and returns at once.
    /// `callback` gets it on the loader's thread; an empty pointer, when there is nothing to show. It may ask
    /// for more, but not wait. Throws std::invalid_argument for an empty callback and for a loader without a
    /// grabber; then nothing is queued.
    void load(boost::rational<__int64> time, bool keepOrientation, KestoRenderLib::Size size,
              std::function<void(boost::shared_ptr<KestoRenderLib::MetaBitmap>)> callback);

    /// Returns when every request was answered. Throws KestoRenderLib::KestoRenderLibException when a
    /// callback calls it.
    void waitUntilFinished();

private:
    const std::unique_ptr<IFrameGrabber> frameGrabber; // only the queue's thread uses it
    KestoRenderLib::CommandQueueThread commandQueue;   // the last, so that it ends before the grabber goes
};

} // namespace KestoThumbnailer
