#include "ThumbCommand.h"

#include "Arguments.h"
#include "GdiplusSession.h"
#include "Paths.h"
#include "Report.h"

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/ImageHelper.h>
#include <KestoThumbnailer/ThumbnailDiagnosis.h>

#include <CLI/App.hpp>
#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <memory>

namespace KestoHost {

namespace {

constexpr int trackByPathAlone = -1;

struct ThumbOptions {
    std::string input;
    std::string output;
    std::string size = "0x92";
    std::string time = "0";
    int track = trackByPathAlone;
    bool json = false;
};

using Helper = KestoThumbnailer::GdiplusBitmapThumbnailingHelper;

std::optional<Failure> refusalOfNames(const ThumbOptions& options) {
    for (const std::string& name : {options.input, options.output})
        if (!wideFromUtf8(name))
            return Failure{"bad-name", fmt::format("\"{}\" is a name that is not valid UTF-8.", name)};
    if (isSameFile(options.input, options.output))
        return Failure{"same-file", fmt::format("\"{}\" would replace the input.", options.output)};
    return std::nullopt;
}

Failure unwritten(const std::string& output) {
    const std::string why = whyNotWritable(output);
    const std::string ending = why.empty() ? "" : ": " + why;
    return {"not-written", fmt::format("\"{}\" can't be written{}.", output, ending)};
}

std::optional<Failure> makeThumbnail(const ThumbOptions& options, ThumbReport& report) {
    const std::wstring path = *wideFromUtf8(options.input);
    const Bounds bounds = *parseBounds(options.size);
    const GdiplusSession session;
    const std::unique_ptr<Gdiplus::Bitmap> bitmap(
        Helper::GetThumbnailForImage(path, bounds.width, bounds.height));
    if (!bitmap) {
        const auto diagnosis = KestoThumbnailer::DiagnoseStillImage(path);
        return Failure{KestoThumbnailer::WordForReason(diagnosis.reason), diagnosis.sentence};
    }
    report.width = static_cast<int>(bitmap->GetWidth());
    report.height = static_cast<int>(bitmap->GetHeight());
    if (!KestoThumbnailer::ImageHelper::QuickSavePic(bitmap.get(), options.output))
        return unwritten(options.output);
    return std::nullopt;
}

std::optional<Failure> tryThumbnail(const ThumbOptions& options, ThumbReport& report) {
    try {
        if (auto refusal = refusalOfNames(options))
            return refusal;
        return makeThumbnail(options, report);
    } catch (const std::exception& error) {
        return Failure{"internal", error.what()};
    }
}

ThumbReport reportOn(const ThumbOptions& options) {
    using Clock = std::chrono::steady_clock;
    ThumbReport report;
    report.input = options.input;
    report.output = options.output;
    report.sourceKind = sourceKindOf(options.input);
    report.seconds = *parseSeconds(options.time);
    const Clock::time_point start = Clock::now();
    report.failure = tryThumbnail(options, report);
    report.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    return report;
}

ExitStatus runThumb(const ThumbOptions& options) {
    const ThumbReport report = reportOn(options);
    if (options.json)
        std::puts(jsonText(report).c_str());
    if (!report.failure)
        return ExitStatus::Done;
    std::fprintf(stderr, "kesto-thumbnail: %s\n", report.failure->message.c_str());
    return ExitStatus::NoThumbnail;
}

} // namespace

void addThumbCommand(CLI::App& program, ExitStatus& status) {
    const auto options = std::make_shared<ThumbOptions>();
    CLI::App* command = program.add_subcommand("thumb", "Write one thumbnail of a picture or a document");
    command->add_option("INPUT", options->input, "The file to show")->required();
    command
        ->add_option("-o,--output", options->output, "The picture to write: .png, .jpg, .jpeg, .gif or .bmp")
        ->type_name("FILE")
        ->required()
        ->check(checkOutputName);
    command->add_option("--size", options->size, "The box to fit, in pixels; 0 is no bound")
        ->type_name("WxH")
        ->capture_default_str()
        ->check(checkBounds);
    command->add_option("--time", options->time, "The time to show, for inputs that last")
        ->type_name("SECONDS")
        ->capture_default_str()
        ->check(checkSeconds);
    const auto takeTrack = [options](const std::string& text) { options->track = *parseTrack(text); };
    command
        ->add_option_function<std::string>("--track", takeTrack,
                                           "The track to show, for inputs that have several")
        ->type_name("N")
        ->check(checkTrack);
    command->add_flag("--json", options->json, "Report as one JSON object on standard output");
    command->callback([options, &status] { status = runThumb(*options); });
}

} // namespace KestoHost
