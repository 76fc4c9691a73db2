#pragma once

#include "platform/Export.h"
#include "scheduling/ICalloutThumbnailLoader.h"
#include "scheduling/IThumbnailLoaderGdiplusBitmapCallback.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <string>

namespace KestoThumbnailer {

class ThumbnailLoader;

/// Makes thumbnails of callouts on one worker thread of its own, one after another. The process must have
/// started GDI+. Requests that are equal and pending are one: of the same callout object, key, size and user
/// data.
///
/// Requires: not destroyed on its own worker, as in the callback. Guarantees: the destructor drops what is
/// pending and waits for what runs, which may still call; once it has returned no callback runs.
class KESTO_EXPORT CalloutThumbnailLoader final : public ICalloutThumbnailLoader,
                                                  public IThumbnailLoaderGdiplusBitmapCallback {
public:
    /// Starts the worker. Throws std::system_error when the system has no thread to give.
    CalloutThumbnailLoader();
    ~CalloutThumbnailLoader() override;
    CalloutThumbnailLoader(const CalloutThumbnailLoader&) = delete;
    CalloutThumbnailLoader& operator=(const CalloutThumbnailLoader&) = delete;

    void LoadThumbnailForCallout(const std::string& thumbnailKey,
                                 boost::shared_ptr<const KestoMediaLib::Callout> callout, int width,
                                 int height, const std::string& userData) override;
    void SetCallbacks(CalloutThumbnailCallback* callback) override;
    void ClearCallbacks() override;

    /// Where the worker brings thumbnails.
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob& job) override;

private:
    friend class CalloutThumbnailLoaderForTesting;
    /// Over another loader; it may be empty.
    explicit CalloutThumbnailLoader(boost::shared_ptr<ThumbnailLoader> loader);

    std::atomic<CalloutThumbnailCallback*> onThumbnail = nullptr; // no lock: read once for each delivery
    const boost::shared_ptr<ThumbnailLoader> loader; // the last, so that its worker ends before the rest goes
};

} // namespace KestoThumbnailer
