#include "ThumbnailWorker.h"

#include "SourceKind.h"
#include "video/ExactFrame.h"

#include <KestoThumbnailer/ImageHelper.h>
#include <KestoThumbnailer/ThumbnailLoaderJob.h>

#include <exception>
#include <optional>
#include <utility>

namespace KestoHost {

namespace {

using KestoThumbnailer::ThumbnailLoaderJob;

ThumbnailLoaderJob jobFor(const ThumbnailRequest& request) {
    ThumbnailLoaderJob job;
    job.Reset();
    job.mediaPath = request.input;
    job.sourceKind = sourceKindOf(request.input).job;
    job.width = request.bounds.width;
    job.height = request.bounds.height;
    job.times = {request.seconds};
    job.trackIndex = request.track;
    return job;
}

} // namespace

ThumbnailWorker::ThumbnailWorker(Finished whomToTell)
    : finished(std::move(whomToTell))
    , loader(/*pruneDuplicates=*/false) {}

void ThumbnailWorker::begin(ThumbnailRequest next) {
    start = Clock::now();
    request = std::move(next);
    report = reportFor(request);
    hasPicture = false;
    isMoment = asksForMoment(request);
    ThumbnailLoaderJob job = jobFor(request);
    job.callback = this;
    (void)loader.GetThumbnailAsync(job); // only false without an input, which `refusalOf` has refused
}

void ThumbnailWorker::OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob&) {
    if (isMoment) // this is the first frame
        return;
    hasPicture = true;
    report.width = static_cast<int>((*bitmap)->GetWidth());
    report.height = static_cast<int>((*bitmap)->GetHeight());
    try {
        if (!KestoThumbnailer::ImageHelper::QuickSavePic(*bitmap, request.output))
            report.failure = unwritten(request.output);
    } catch (const std::exception& error) {
        report.failure = internalFailure(request.input, error.what());
    }
}

void ThumbnailWorker::OnThumbnailJobFinished(const ThumbnailLoaderJob&) {
    try {
        if (!hasPicture)
            tryWithoutLoader();
    } catch (const std::exception& error) {
        report.failure = internalFailure(request.input, error.what());
    }
    report.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    finished(*this, std::exchange(report, {}));
}

/// The loader's own road to videos lays a grid over times; this one gives the exact frame.
void ThumbnailWorker::tryWithoutLoader() {
    const InputKind kind = isMoment ? InputKind::Animation : inputKindOf(request.input);
    if (kind == InputKind::Still)
        report.failure = withoutPicture(request.input);
    else
        report = exactThumbnail(request, kind, std::nullopt);
}

} // namespace KestoHost
