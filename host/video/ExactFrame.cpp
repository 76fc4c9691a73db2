#include "video/ExactFrame.h"

#include "video/GifFrame.h"
#include "video/RecordingPicture.h"
#include "video/TimedFrames.h"
#include "video/VideoFrames.h"

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/ImageHelper.h>
#include <KestoThumbnailer/platform/FrameCodecLib.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace KestoHost {

namespace {

using KestoRenderLib::MetaBitmap;
using BitmapPtr = std::unique_ptr<Gdiplus::Bitmap>;
using FramePtr = boost::shared_ptr<MetaBitmap>;

std::optional<double> parseNumber(std::string_view text) {
    double value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc{} && rest == text.data() + text.size();
    return isWhole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::vector<std::string_view> partsOf(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t comma = text.find(','); comma != std::string_view::npos; comma = text.find(',')) {
        parts.push_back(text.substr(0, comma));
        text.remove_prefix(comma + 1);
    }
    parts.push_back(text);
    return parts;
}

ModelTime timeOf(const ThumbnailRequest& request) {
    return modelTimeOf(std::min(request.seconds, longestSeconds));
}

Failure nothingShown(const ThumbnailRequest& request) {
    return {"no-pictures",
            fmt::format("\"{}\" shows nothing at {}.", request.input, secondsText(timeOf(request))),
            /*withoutPicture=*/true};
}

std::optional<Failure> save(Gdiplus::Bitmap& bitmap, const ThumbnailRequest& request, ThumbReport& report) {
    report.width = static_cast<int>(bitmap.GetWidth());
    report.height = static_cast<int>(bitmap.GetHeight());
    if (!KestoThumbnailer::ImageHelper::QuickSavePic(&bitmap, request.output))
        return unwritten(request.output);
    return std::nullopt;
}

std::optional<Failure> saveThumbnail(const FramePtr& frame, const ThumbnailRequest& request,
                                     ThumbReport& report) {
    const BitmapPtr thumbnail(KestoThumbnailer::GdiplusBitmapThumbnailingHelper::ScaleToGetThumbnail(
        frame, request.bounds.width, request.bounds.height));
    return thumbnail ? save(*thumbnail, request, report) : nothingShown(request);
}

/// A frame's number where frames follow each other evenly. Containers round times, to the millisecond at
/// worst.
std::optional<long long> numberOf(const FrameCodecLib::FrameTiming& timing,
                                  const boost::rational<__int64>& rate) {
    constexpr double mostOff = 0.15;
    const double place = boost::rational_cast<double>(timing.start) * boost::rational_cast<double>(rate);
    const double number = std::round(place);
    return rate > 0 && std::abs(place - number) <= mostOff ? std::optional(static_cast<long long>(number))
                                                           : std::nullopt;
}

std::optional<Failure> makeFromVideo(const ThumbnailRequest& request, ThumbReport& report) {
    const VideoFrames::Opened opened = VideoFrames::open(request.input, request.track);
    if (!opened.frames)
        return opened.failure;
    VideoFrames& frames = *opened.frames;
    const auto frame = frames.frameAt(timeOf(request), thumbnailSizeOf(frames.size(), request.bounds));
    if (!frame.bitmap)
        return nothingShown(request);
    report.frame = {boost::rational_cast<double>(frame.timing.start),
                    numberOf(frame.timing, frames.frameRate())};
    return saveThumbnail(frame.bitmap, request, report);
}

std::optional<Failure> makeFromGif(const ThumbnailRequest& request, ThumbReport& report) {
    const GifThumbnail made = gifThumbnail(request.input, request.seconds, request.bounds);
    if (!made.bitmap)
        return nothingShown(request);
    report.frame = made.told;
    return save(*made.bitmap, request, report);
}

std::optional<Failure> makeFromRecording(const ThumbnailRequest& request, ThumbReport& report) {
    const RecordingPicture picture = pictureOfRecording(request);
    return picture.bitmap ? save(*picture.bitmap, request, report) : picture.failure;
}

/// Media shows its last frame after its end, as a decoder does; a project is over then.
std::optional<Failure> refusalOfTime(const TimedFrames& frames, const ThumbnailRequest& request) {
    if (!frames.isProject() || timeOf(request) < frames.duration())
        return std::nullopt;
    return Failure{"after-end", fmt::format("\"{}\" ends at {}; it shows nothing at {}.", request.input,
                                            secondsText(frames.duration()), secondsText(timeOf(request)))};
}

ModelTime timeWithin(const TimedFrames& frames, const ThumbnailRequest& request) {
    return std::clamp<ModelTime>(timeOf(request), 0, std::max<ModelTime>(frames.duration() - 1, 0));
}

DeliveredFrame frameOfProject(const FrameClock& clock, ModelTime time) {
    const __int64 frame = clock.frameAt(time);
    return {clock.startOf(frame).toDouble(), frame};
}

std::optional<Failure> makeFromProject(TimedFrames& frames, const ThumbnailRequest& request,
                                       const std::optional<ZoomView>& view, ThumbReport& report) {
    if (auto refusal = refusalOfTime(frames, request))
        return refusal;
    const ModelTime time = timeWithin(frames, request);
    if (frames.isProject())
        report.frame = frameOfProject(frames.clock(), time);
    if (!view) {
        const FramePtr frame = frames.frameAt(time);
        return frame ? saveThumbnail(frame, request, report) : nothingShown(request);
    }
    const BitmapPtr bitmap = frames.viewAt(time, view->part, view->size);
    return bitmap ? save(*bitmap, request, report) : nothingShown(request);
}

std::optional<Failure> makeThumbnail(const ThumbnailRequest& request, InputKind kind,
                                     const std::optional<ZoomView>& view, ThumbReport& report) {
    if (kind == InputKind::Video && !view)
        return makeFromVideo(request, report);
    if (kind == InputKind::Animation && !view)
        return makeFromGif(request, report);
    if (kind == InputKind::Recording && !view)
        return makeFromRecording(request, report);
    const TimedFrames::Opened opened = TimedFrames::open(request.input);
    return opened.frames ? makeFromProject(*opened.frames, request, view, report) : opened.failure;
}

} // namespace

std::optional<KestoMediaLib::Rect<double>> parseZoomPart(const std::string& text) {
    std::vector<double> numbers;
    for (const std::string_view part : partsOf(text))
        if (const std::optional<double> number = parseNumber(part))
            numbers.push_back(*number);
    const bool isRect = numbers.size() == 4 && partsOf(text).size() == 4 && numbers[2] > 0 && numbers[3] > 0;
    return isRect ? std::optional(KestoMediaLib::Rect<double>(numbers[0], numbers[1], numbers[2], numbers[3]))
                  : std::nullopt;
}

std::optional<KestoRenderLib::Size> parseZoomSize(const std::string& text) {
    const std::optional<Bounds> size = parseBounds(text);
    const KestoRenderLib::Size largest = TimedFrames::largestView;
    if (!size || size->width < 1 || size->height < 1 || size->width > largest.width ||
        size->height > largest.height)
        return std::nullopt;
    return KestoRenderLib::Size{size->width, size->height};
}

std::string checkZoomPart(const std::string& text) {
    if (parseZoomPart(text))
        return {};
    return fmt::format("expected X,Y,WIDTH,HEIGHT in pixels, the last two above 0, found \"{}\"", text);
}

std::string checkZoomSize(const std::string& text) {
    if (parseZoomSize(text))
        return {};
    return fmt::format("expected WIDTHxHEIGHT in pixels from 1x1 to {}x{}, found \"{}\"",
                       TimedFrames::largestView.width, TimedFrames::largestView.height, text);
}

ThumbReport exactThumbnail(const ThumbnailRequest& request, InputKind kind,
                           const std::optional<ZoomView>& view) {
    using Clock = std::chrono::steady_clock;
    ThumbReport report = reportFor(request);
    report.sourceKind = wordOf(kind, request.input);
    const Clock::time_point start = Clock::now();
    try {
        report.failure = makeThumbnail(request, kind, view, report);
    } catch (const std::exception& error) {
        report.failure = internalFailure(request.input, error.what());
    }
    report.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    return report;
}

} // namespace KestoHost
