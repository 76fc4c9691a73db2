#include "ThumbCommand.h"

#include "GdiplusSession.h"
#include "ThumbnailOptions.h"
#include "ThumbnailWorker.h"

#include <KestoThumbnailer/platform/Threading.h>

#include <CLI/App.hpp>

#include <cstdio>
#include <memory>

namespace KestoHost {

namespace {

struct ThumbOptions : ThumbnailOptions {
    std::string input;
    std::string output;
};

ThumbReport makeThumbnail(const ThumbnailRequest& request) {
    const GdiplusSession session;
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

ThumbReport reportOn(const ThumbnailRequest& request) {
    ThumbReport report = reportFor(request);
    report.failure = refusalOf(request);
    return report.failure ? report : makeThumbnail(request);
}

ExitStatus runThumb(const ThumbOptions& options) {
    const ThumbReport report = reportOn(requestFor(options, options.input, options.output));
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
    addThumbnailOptions(*command, options, "Report as one JSON object on standard output");
    command->callback([options, &status] { status = runThumb(*options); });
}

} // namespace KestoHost
