#pragma once

#include "platform/Export.h"
#include "platform/KestoMediaLib.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>
#include <string>
#include <vector>

namespace KestoThumbnailer {

class IThumbnailLoaderGdiplusBitmapCallback;

/// What a job makes its pictures of.
enum ThumbnailSourceKind : int {
    SourceProject = 0,
    SourceVideo = 1,
    SourceImage = 2,
    SourceCallout = 3,
};

// `Reset` is the one virtual operation: jobs are copied as values, never deleted through a base.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// One request for thumbnails. A plain value: each copy stands for itself, but for the project and the media,
/// which copies share. Texts are UTF-8, sizes pixels, times seconds.
struct KESTO_EXPORT ThumbnailLoaderJob {
    /// Puts every field back to its default.
    virtual void Reset();

    /// Of the thumbnail, or of one tile of a sheet.
    int width = 0;
    int height = 92;

    /// Where the picture is saved, in the format that the extension tells; empty: in no file.
    std::string outputFilePath;

    /// Receives each bitmap. Not owned; must live until the job has run.
    IThumbnailLoaderGdiplusBitmapCallback* callback = nullptr;

    /// The caller's own text.
    std::string thumbnailKey;

    /// The caller's identity of the request: of pending jobs with the same one, from 1 up, only the newest
    /// runs. Below 1: none.
    std::int64_t dedupeId = 0;

    /// The source, in this order of preference: `project`, the media or project file `mediaPath`,
    /// `projectJson` with paths relative to `projectBasePath`. A callout is the first of `mediaToRender`.
    std::string mediaPath;
    std::string projectJson;
    std::string projectBasePath;

    /// One thumbnail each; with none, nothing is made.
    std::vector<double> times;

    /// With two or more times, composes them into one sheet.
    bool useSpriteSheet = true;

    boost::shared_ptr<KestoMediaLib::Project> project;
    ThumbnailSourceKind sourceKind = SourceProject;

    /// The region that a zoom job shows, and the size at which it does: see `IsZoomJob`.
    KestoMediaLib::Rect<double> zoomRect;
    int zoomWidth = 0;
    int zoomHeight = 0;

    /// Restricts what of a project is rendered.
    std::list<boost::shared_ptr<const KestoMediaLib::Media>> mediaToRender;

    /// The caller's own word. Takes no part in comparisons.
    std::uint64_t opaqueValue = 0;

    /// The caller's own text.
    std::string userData;

    /// The track of a video; -1: the path alone decides.
    int trackIndex = -1;
};

#pragma GCC diagnostic pop

/// True when both jobs ask for the same, whatever `opaqueValue` says. Project and media are the same when
/// their pointers are, in the same order; sides of `zoomRect` when they differ by less than the epsilon of
/// double. A job with a NaN among its times or in its `zoomRect` is unequal to every job, itself included.
KESTO_EXPORT bool operator==(const ThumbnailLoaderJob& left, const ThumbnailLoaderJob& right);

/// True for a job that has both its `zoomWidth` and its `zoomHeight`.
KESTO_EXPORT bool IsZoomJob(const ThumbnailLoaderJob& job);

} // namespace KestoThumbnailer
