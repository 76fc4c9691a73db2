#include "scheduling/AsyncThumbnailerLoader.h"

#include <stdexcept>
#include <utility>

namespace KestoThumbnailer {

AsyncThumbnailerLoader::AsyncThumbnailerLoader(std::unique_ptr<IFrameGrabber> grabber)
    : frameGrabber(std::move(grabber))
    , commandQueue({}, {}, {}, /*startAtOnce=*/true) {}

void AsyncThumbnailerLoader::load(
    boost::rational<__int64> time, bool keepOrientation, KestoRenderLib::Size size,
    std::function<void(boost::shared_ptr<KestoRenderLib::MetaBitmap>)> callback) {
    if (!callback)
        throw std::invalid_argument("AsyncThumbnailerLoader requires a valid callback");
    if (!frameGrabber)
        throw std::invalid_argument("AsyncThumbnailerLoader requires a frame grabber");
    commandQueue.pushCommand(
        [loader = this, time, keepOrientation, size, callback = std::move(callback)] {
            callback(loader->frameGrabber->frameAtTime(time, keepOrientation, size));
        },
        KestoRenderLib::CommandQueueThread::noLimit);
}

void AsyncThumbnailerLoader::waitUntilFinished() {
    commandQueue.waitUntilAllCommandsAreFinished();
}

} // namespace KestoThumbnailer
