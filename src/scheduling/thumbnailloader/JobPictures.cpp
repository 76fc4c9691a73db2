#include "scheduling/thumbnailloader/JobPictures.h"

#include "scheduling/ThumbnailLoaderJob.h"
#include "scheduling/imagefile/TextConversion.h"

#include "framegrab/FrameGrabberUtil.h"
#include "platform/KestoMediaModel.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"

#include <boost/rational.hpp>

#include <cmath>
#include <limits>

namespace KestoThumbnailer {

namespace {

using Helper = GdiplusBitmapThumbnailingHelper;
using Picture = std::unique_ptr<Gdiplus::Bitmap>;

/// What a file is taken to play at, in frames to the second.
const boost::rational<unsigned long> fileFrameRate(30, 1);

double TimeOf(const ThumbnailLoaderJob& job) {
    return job.times.empty() ? 0.0 : job.times.front();
}

/// Toward zero; at the ends of the range beyond it, and 0 for what is no number.
__int64 Truncated(double number) {
    constexpr __int64 lowest = std::numeric_limits<__int64>::min();
    constexpr __int64 highest = std::numeric_limits<__int64>::max();
    if (std::isnan(number))
        return 0;
    if (number >= static_cast<double>(highest))
        return highest;
    return number <= static_cast<double>(lowest) ? lowest : static_cast<__int64>(number);
}

} // namespace

Picture PictureOfFrame(const ThumbnailLoaderJob& job, IFrameGrabber& grabber) {
    return Picture(Helper::ScaleToGetThumbnail(FrameAtSeconds(TimeOf(job), grabber), job.width, job.height));
}

__int64 FrameNumberOf(const ThumbnailLoaderJob& job) {
    const boost::rational<unsigned long> rate = job.project->frameRate();
    return Truncated(static_cast<double>(rate.numerator()) * TimeOf(job) /
                     static_cast<double>(rate.denominator()));
}

Picture CropOfFrame(const ThumbnailLoaderJob& job, const boost::shared_ptr<KestoRenderLib::MetaBitmap>& frame,
                    const KestoMediaLib::Rect<int>& viewport) {
    if (!frame)
        return nullptr;
    Picture crop(new Gdiplus::Bitmap(job.zoomWidth, job.zoomHeight, PixelFormat32bppARGB));
    if (!crop || crop->GetLastStatus() != Gdiplus::Ok)
        return nullptr;
    const int left = viewport.width / 2 - job.zoomWidth / 2;
    const int top = viewport.height / 2 - job.zoomHeight / 2;
    Gdiplus::Graphics(crop.get()).DrawImage(frame->AsGdiplusBitmap().get(), -left, -top);
    return crop;
}

Picture PictureOfFile(const ThumbnailLoaderJob& job) {
    const std::wstring path = WideFromUtf8(job.mediaPath);
    switch (job.sourceKind) {
    case SourceVideo:
        return Picture(Helper::GetThumbnailForVideo(path, TimeOf(job), job.width, job.height, fileFrameRate,
                                                    job.trackIndex));
    case SourceImage:
        return Picture(Helper::GetThumbnailForImage(path, job.width, job.height));
    case SourceProject:
    case SourceCallout:
        break;
    }
    return nullptr;
}

Picture PictureOfCallout(const ThumbnailLoaderJob& job) {
    if (job.mediaToRender.empty())
        return nullptr;
    const auto callout = KestoMediaLibUtl::ConvertMedia(job.mediaToRender.front()).GetCallout();
    return Picture(Helper::GetThumbnailForCallout(callout, job.width, job.height));
}

} // namespace KestoThumbnailer
