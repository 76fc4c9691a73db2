#include "ThumbnailWorker.h"

#include "Paths.h"

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/ImageHelper.h>
#include <KestoThumbnailer/ThumbnailDiagnosis.h>

#include <chrono>
#include <exception>
#include <memory>
#include <utility>

namespace KestoHost {

namespace {

using Clock = std::chrono::steady_clock;
using Helper = KestoThumbnailer::GdiplusBitmapThumbnailingHelper;

std::optional<Failure> makeThumbnail(const ThumbnailRequest& request, ThumbReport& report) {
    const std::wstring path = *wideFromUtf8(request.input);
    const std::unique_ptr<Gdiplus::Bitmap> bitmap(
        Helper::GetThumbnailForImage(path, request.bounds.width, request.bounds.height));
    if (!bitmap) {
        const auto diagnosis = KestoThumbnailer::DiagnoseStillImage(path);
        return Failure{KestoThumbnailer::WordForReason(diagnosis.reason), diagnosis.sentence,
                       /*withoutPicture=*/true};
    }
    report.width = static_cast<int>(bitmap->GetWidth());
    report.height = static_cast<int>(bitmap->GetHeight());
    if (!KestoThumbnailer::ImageHelper::QuickSavePic(bitmap.get(), request.output))
        return unwritten(request.output);
    return std::nullopt;
}

ThumbReport reportOn(const ThumbnailRequest& request) {
    ThumbReport report = reportFor(request);
    const Clock::time_point start = Clock::now();
    try {
        report.failure = makeThumbnail(request, report);
    } catch (const std::exception& error) {
        report.failure = internalFailure(request.input, error.what());
    }
    report.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    return report;
}

} // namespace

ThumbnailWorker::ThumbnailWorker(Finished whomToTell)
    : finished(std::move(whomToTell))
    , thread([this] { run(); }) {}

ThumbnailWorker::~ThumbnailWorker() {
    next.reset();
    begun.set();
    thread.join();
}

void ThumbnailWorker::begin(ThumbnailRequest request) {
    next = std::move(request);
    begun.set();
}

void ThumbnailWorker::run() {
    for (begun.wait(); next; begun.wait()) {
        const ThumbnailRequest request = *std::exchange(next, std::nullopt);
        finished(*this, reportOn(request));
    }
}

} // namespace KestoHost
