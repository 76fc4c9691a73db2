#include "ThumbCommand.h"

#include "GdiplusSession.h"
#include "ThumbnailOptions.h"
#include "ThumbnailWorker.h"
#include "video/ExactFrame.h"

#include <KestoThumbnailer/platform/Threading.h>

#include <CLI/App.hpp>

#include <cstdio>
#include <memory>

namespace KestoHost {

namespace {

struct ThumbOptions : ThumbnailOptions {
    std::string input;
    std::string output;
    std::string zoomPart;
    std::string zoomSize;
};

ThumbReport makeThumbnail(const ThumbnailRequest& request) {
    ThumbReport made;
    Event done(EventReset::Automatic);
    ThumbnailWorker worker([&made, &done](ThumbnailWorker&, const ThumbReport& report) {
        made = report;
        done.set();
    });
    worker.begin(request);
    done.wait();
    return made;
}

std::optional<ZoomView> viewOf(const ThumbOptions& options) {
    if (options.zoomPart.empty())
        return std::nullopt;
    return ZoomView{*parseZoomPart(options.zoomPart), *parseZoomSize(options.zoomSize)};
}

ThumbReport reportOn(const ThumbnailRequest& request, const std::optional<ZoomView>& view) {
    ThumbReport report = reportFor(request);
    report.failure = refusalOf(request);
    if (report.failure)
        return report;
    const GdiplusSession session;
    const InputKind kind = inputKindOf(request);
    if (view || kind != InputKind::Still)
        return exactThumbnail(request, kind, view);
    return makeThumbnail(request);
}

ExitStatus runThumb(const ThumbOptions& options) {
    const ThumbReport report = reportOn(requestFor(options, options.input, options.output), viewOf(options));
    if (options.json)
        std::puts(jsonText(report).c_str());
    if (!report.failure)
        return ExitStatus::Done;
    std::fprintf(stderr, "kesto-thumbnail: %s\n", report.failure->message.c_str());
    return ExitStatus::NoThumbnail;
}

void addZoom(CLI::App& command, ThumbOptions& options) {
    CLI::Option* part = command.add_option("--zoom", options.zoomPart,
                                           "Show this part alone, in pixels from the top left corner");
    CLI::Option* size = command.add_option("--zoom-size", options.zoomSize, "At this size, in pixels");
    part->type_name("X,Y,W,H")->check(checkZoomPart)->needs(size);
    size->type_name("WxH")->check(checkZoomSize)->needs(part);
}

} // namespace

void addThumbCommand(CLI::App& program, ExitStatus& status) {
    const auto options = std::make_shared<ThumbOptions>();
    CLI::App* command = program.add_subcommand(
        "thumb", "Write one thumbnail of a picture, a document, a video, a recording or a project");
    command->add_option("INPUT", options->input, "The file to show")->required();
    command
        ->add_option("-o,--output", options->output, "The picture to write: .png, .jpg, .jpeg, .gif or .bmp")
        ->type_name("FILE")
        ->required()
        ->check(checkOutputName);
    addThumbnailOptions(*command, options, "Report as one JSON object on standard output");
    addZoom(*command, *options);
    command->callback([options, &status] { status = runThumb(*options); });
}

} // namespace KestoHost
