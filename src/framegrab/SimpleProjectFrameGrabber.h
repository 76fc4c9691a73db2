#pragma once

#include "platform/Export.h"
#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderProject.h"

#include <boost/shared_ptr.hpp>

#include <memory>

namespace KestoThumbnailer {

class ProjectFrameGrabber;

/// A `ProjectFrameGrabber` behind plain types. One caller at a time, on any thread.
class KESTO_EXPORT SimpleProjectFrameGrabber {
public:
    /// Shares the project. Throws what the constructor of `ProjectFrameGrabber` throws.
    explicit SimpleProjectFrameGrabber(KestoMediaLib::SimpleProject project);
    virtual ~SimpleProjectFrameGrabber();
    SimpleProjectFrameGrabber(const SimpleProjectFrameGrabber&) = delete;
    SimpleProjectFrameGrabber& operator=(const SimpleProjectFrameGrabber&) = delete;

    /// The whole canvas at `seconds`, cut to whole milliseconds toward zero, in its own size and with its
    /// orientation kept. What is returned holds no frame when there is nothing to show.
    KestoRenderLib::SimpleMetaBitmap frameAtTime(double seconds);

private:
    std::unique_ptr<boost::shared_ptr<ProjectFrameGrabber>> grabber;
};

} // namespace KestoThumbnailer
