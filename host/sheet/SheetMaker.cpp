#include "sheet/SheetMaker.h"

#include "GdiplusSession.h"
#include "LetterCase.h"
#include "Paths.h"
#include "SourceKind.h"
#include "ThumbnailRequest.h"
#include "WholeFiles.h"
#include "sheet/ScrubPage.h"
#include "sheet/SheetPainter.h"
#include "sheet/WebVtt.h"
#include "video/GifFrame.h"
#include "video/MovingInput.h"
#include "video/TimedFrames.h"
#include "video/VideoFrames.h"

#include <KestoThumbnailer/ImageHelper.h>

#include <fmt/format.h>

#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <utility>

namespace KestoHost {

namespace {

/// Two of them stand in memory when the sheet is delivered, 4 bytes a pixel.
constexpr std::int64_t mostSheetPixels = 100'000'000;
constexpr int longestSheetSide = 32767;

std::vector<std::string> outputsOf(const SheetRequest& request) {
    std::vector<std::string> outputs;
    for (const std::string* name : {&request.output, &request.vtt, &request.html})
        if (!name->empty())
            outputs.push_back(*name);
    return outputs;
}

std::optional<Failure> refusalOfOutput(const SheetRequest& request, const std::string& output) {
    ThumbnailRequest names;
    names.input = request.input;
    names.output = output;
    if (auto refusal = refusalOf(names))
        return refusal;
    if (!whyNotWritable(output).empty())
        return unwritten(output);
    return std::nullopt;
}

/// By the names alone, so that nobody waits for a sheet that could not be written.
std::optional<Failure> refusalOfNames(const SheetRequest& request) {
    const std::vector<std::string> outputs = outputsOf(request);
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        if (auto refusal = refusalOfOutput(request, outputs[i]))
            return refusal;
        for (std::size_t k = 0; k < i; ++k)
            if (forgivenName(outputs[i]) == forgivenName(outputs[k]))
                return Failure{"same-file", fmt::format("\"{}\" is asked for twice.", outputs[i])};
    }
    return std::nullopt;
}

std::optional<Failure> refusalOfLayout(const SheetLayout& layout, const std::string& input) {
    if (layout.clipped.size() == layout.tiles.size())
        return Failure{"no-layout",
                       fmt::format("Tiles of \"{}\" are {} pixels wide, and rows are at most 4000: "
                                   "leave out --style, or make --tile smaller.",
                                   input, layout.tile.width)};
    const bool tooLong = layout.width > longestSheetSide || layout.height > longestSheetSide;
    if (tooLong || std::int64_t{layout.width} * layout.height > mostSheetPixels)
        return Failure{
            "sheet-too-large",
            fmt::format("The sheet of \"{}\" would have {} x {} pixels; at most {} in each direction "
                        "and {} in all are possible: make --tile smaller or ask for fewer tiles.",
                        input, layout.width, layout.height, longestSheetSide, mostSheetPixels)};
    return std::nullopt;
}

/// Of which tiles are made.
struct TileSource {
    ModelTime duration = 0;
    TileSize shape;
    std::function<boost::shared_ptr<KestoRenderLib::MetaBitmap>(ModelTime, const TileSize&)> frameAt;
};

/// What the sheet will be, without a look at any frame.
std::optional<Failure> plan(const TileSource& source, SheetReport& report) {
    const SheetRequest& request = report.request;
    report.duration = source.duration;
    if (auto refusal = refusalOfTimes(request.times, report.duration, request.input))
        return refusal;
    report.times = timesFor(request.times, report.duration);
    const TileSize tile = tileSizeFor(source.shape, request.tile);
    const int count = static_cast<int>(report.times.size());
    report.layout = request.style ? layOut(*request.style, tile, count) : layOutWhole(tile, count);
    return refusalOfLayout(report.layout, request.input);
}

std::string bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string mediaTypeOf(const std::string& output) {
    const std::string extension = lowerCase(output.substr(output.rfind('.') + 1));
    return "image/" + (extension == "jpg" ? "jpeg" : extension);
}

std::string pageFor(const SheetReport& report, std::string picture) {
    return htmlText({.title = std::filesystem::path(report.request.input).filename().string(),
                     .mediaType = mediaTypeOf(report.request.output),
                     .picture = std::move(picture),
                     .width = report.layout.width,
                     .height = report.layout.height,
                     .cues = cuesFor(report.times, report.duration),
                     .tiles = report.layout.tiles,
                     .holes = report.holes});
}

std::string vttFor(const SheetReport& report) {
    const SheetRequest& request = report.request;
    return webVttText(cuesFor(report.times, report.duration), report.layout.tiles,
                      relativeUrl(request.vtt, request.output));
}

std::optional<Failure> writeFiles(Gdiplus::Bitmap& sheet, const SheetReport& report) {
    const SheetRequest& request = report.request;
    WholeFiles files;
    const std::string picture = files.pathFor(request.output);
    if (!KestoThumbnailer::ImageHelper::QuickSavePic(&sheet, picture))
        return unwritten(request.output);
    if (!request.vtt.empty() && !files.write(request.vtt, vttFor(report)))
        return unwritten(request.vtt);
    if (!request.html.empty() && !files.write(request.html, pageFor(report, bytesOf(picture))))
        return unwritten(request.html);
    const std::string left = files.commit();
    return left.empty() ? std::nullopt : std::optional(unwritten(left));
}

std::optional<Failure> makeFrom(const TileSource& source, SheetReport& report) {
    const SheetRequest& request = report.request;
    if (auto refusal = plan(source, report))
        return refusal;
    const auto frameAt = [&](ModelTime time) { return source.frameAt(time, report.layout.tile); };
    const PaintedSheet sheet = paintSheet(frameAt, report.times, report.layout);
    report.holes = sheet.holes;
    if (sheet.holes.size() == report.times.size())
        return Failure{
            "no-pictures",
            fmt::format("\"{}\" shows nothing at any of the {} times.", request.input, report.times.size()),
            /*withoutPicture=*/true};
    if (!sheet.bitmap)
        return internalFailure(request.input, "no memory for the sheet");
    return writeFiles(*sheet.bitmap, report);
}

/// Frames come out of the decoder in the size of their tiles.
std::optional<Failure> makeFromVideo(SheetReport& report) {
    const VideoFrames::Opened opened = VideoFrames::open(report.request.input, trackByPathAlone);
    if (!opened.frames)
        return opened.failure;
    VideoFrames& frames = *opened.frames;
    return makeFrom({frames.duration(),
                     {frames.size().width, frames.size().height},
                     [&frames](ModelTime time, const TileSize& tile) {
                         return frames.frameAt(time, {tile.width, tile.height}).bitmap;
                     }},
                    report);
}

std::optional<Failure> makeFromProject(SheetReport& report) {
    const TimedFrames::Opened opened = TimedFrames::open(report.request.input);
    if (!opened.frames)
        return opened.failure;
    TimedFrames& frames = *opened.frames;
    return makeFrom({frames.duration(),
                     {frames.canvas().width, frames.canvas().height},
                     [&frames](ModelTime time, const TileSize&) { return frames.frameAt(time); }},
                    report);
}

std::optional<Failure> tryMake(SheetReport& report) {
    const SheetRequest& request = report.request;
    if (auto refusal = refusalOfNames(request))
        return refusal;
    const GdiplusSession session;
    const InputKind kind = isAnimatedGif(request.input) ? InputKind::Animation : inputKindOf(request.input);
    report.sourceKind = wordOf(kind, request.input);
    return kind == InputKind::Video ? makeFromVideo(report) : makeFromProject(report);
}

} // namespace

SheetReport makeSheet(const SheetRequest& request) {
    using Clock = std::chrono::steady_clock;
    SheetReport report;
    report.request = request;
    report.sourceKind = sourceKindOf(request.input).word; // until the content tells
    const Clock::time_point start = Clock::now();
    try {
        report.failure = tryMake(report);
    } catch (const std::exception& error) {
        report.failure = internalFailure(request.input, error.what());
    }
    report.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    return report;
}

} // namespace KestoHost
