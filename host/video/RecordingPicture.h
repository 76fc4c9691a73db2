#pragma once

#include "Report.h"
#include "ThumbnailRequest.h"

#include <KestoThumbnailer/platform/Gdiplus.h>

#include <memory>
#include <string>

namespace KestoHost {

/// Whether the name is that of a recording of screen and camera.
bool isRecordingFile(const std::string& input);

struct RecordingPicture {
    std::unique_ptr<Gdiplus::Bitmap> bitmap; ///< null: see `failure`
    Failure failure;
};

/// The screen with the camera in its corner, or the one that the request's track is of, at the request's
/// time, within its bounds. Requires: `refusalOf` has nothing against the request. The process must have
/// started GDI+.
RecordingPicture pictureOfRecording(const ThumbnailRequest& request);

} // namespace KestoHost
