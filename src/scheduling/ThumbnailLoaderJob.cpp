#include "scheduling/ThumbnailLoaderJob.h"

#include <cmath>
#include <limits>

namespace KestoThumbnailer {

namespace {

bool AreClose(double left, double right) {
    return std::abs(left - right) < std::numeric_limits<double>::epsilon();
}

bool AreClose(const KestoMediaLib::Rect<double>& left, const KestoMediaLib::Rect<double>& right) {
    return AreClose(left.x, right.x) && AreClose(left.y, right.y) && AreClose(left.width, right.width) &&
           AreClose(left.height, right.height);
}

} // namespace

void ThumbnailLoaderJob::Reset() {
    *this = ThumbnailLoaderJob();
}

// Deliberate: `opaqueValue` takes no part.
bool operator==(const ThumbnailLoaderJob& left, const ThumbnailLoaderJob& right) {
    return left.height == right.height && left.width == right.width &&
           left.outputFilePath == right.outputFilePath && left.callback == right.callback &&
           left.thumbnailKey == right.thumbnailKey && left.dedupeId == right.dedupeId &&
           left.mediaPath == right.mediaPath && left.projectJson == right.projectJson &&
           left.projectBasePath == right.projectBasePath && left.times == right.times &&
           left.useSpriteSheet == right.useSpriteSheet && left.project == right.project &&
           left.sourceKind == right.sourceKind && AreClose(left.zoomRect, right.zoomRect) &&
           left.zoomWidth == right.zoomWidth && left.zoomHeight == right.zoomHeight &&
           left.mediaToRender == right.mediaToRender && left.userData == right.userData &&
           left.trackIndex == right.trackIndex;
}

bool IsZoomJob(const ThumbnailLoaderJob& job) {
    return job.zoomWidth >= 1 && job.zoomHeight >= 1;
}

} // namespace KestoThumbnailer
