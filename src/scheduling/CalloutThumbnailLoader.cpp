#include "scheduling/CalloutThumbnailLoader.h"

#include "scheduling/ThumbnailLoader.h"
#include "scheduling/ThumbnailLoaderJob.h"

#include "platform/Gdiplus.h"
#include "platform/KestoMediaCallout.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace KestoThumbnailer {

CalloutThumbnailLoader::CalloutThumbnailLoader()
    : CalloutThumbnailLoader(boost::make_shared<ThumbnailLoader>(/*pruneDuplicates=*/true, SpriteStyleRows)) {
}

CalloutThumbnailLoader::CalloutThumbnailLoader(boost::shared_ptr<ThumbnailLoader> worker)
    : loader(std::move(worker)) {}

// The worker ends with the first member that goes. Until then all of this object is there for a callback,
// also one that asks for more: that is why the pointer is left as it is.
CalloutThumbnailLoader::~CalloutThumbnailLoader() = default;

void CalloutThumbnailLoader::LoadThumbnailForCallout(const std::string& thumbnailKey,
                                                     boost::shared_ptr<const KestoMediaLib::Callout> callout,
                                                     int width, int height, const std::string& userData) {
    if (!loader)
        return;
    ThumbnailLoaderJob job;
    job.sourceKind = SourceCallout;
    job.width = width;
    job.height = height;
    job.callback = this;
    job.times = {0.0};
    job.mediaToRender = {std::move(callout)};
    job.userData = userData;
    job.thumbnailKey = thumbnailKey;
    (void)loader->GetThumbnailAsync(job); // a callout is never refused
}

void CalloutThumbnailLoader::SetCallbacks(CalloutThumbnailCallback* callback) {
    if (callback)
        onThumbnail = callback;
}

void CalloutThumbnailLoader::ClearCallbacks() {
    onThumbnail = nullptr;
}

void CalloutThumbnailLoader::OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                                            const ThumbnailLoaderJob& job) {
    if (!bitmap || !*bitmap)
        return;
    if (CalloutThumbnailCallback* const deliver = onThumbnail) {
        deliver(job.thumbnailKey, bitmap, job.userData);
        return;
    }
    delete *bitmap;
    *bitmap = nullptr;
}

} // namespace KestoThumbnailer
