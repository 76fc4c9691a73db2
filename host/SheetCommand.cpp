#include "SheetCommand.h"

#include "LetterCase.h"
#include "sheet/SheetMaker.h"

#include <CLI/App.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <memory>

namespace KestoHost {

namespace {

struct SheetOptions {
    std::string input;
    std::string output;
    std::string count;
    std::string every;
    std::string times;
    std::string tile = "160x90";
    std::string style;
    std::string vtt;
    std::string html;
    bool json = false;
};

TimesAsked timesOf(const SheetOptions& options) {
    TimesAsked asked;
    if (!options.count.empty())
        asked.count = parseTrack(options.count);
    if (!options.every.empty())
        asked.every = parseTime(options.every);
    if (!options.times.empty())
        asked.times = parseTimes(options.times);
    return asked;
}

SheetRequest requestFor(const SheetOptions& options) {
    return {.input = options.input,
            .output = options.output,
            .vtt = options.vtt,
            .html = options.html,
            .times = timesOf(options),
            .tile = *parseBounds(options.tile),
            .style = parseStyle(options.style)};
}

ExitStatus runSheet(const SheetOptions& options) {
    const SheetReport report = makeSheet(requestFor(options));
    if (options.json)
        std::puts(jsonText(report).c_str());
    if (report.failure) {
        std::fprintf(stderr, "kesto-thumbnail: %s\n", report.failure->message.c_str());
        return ExitStatus::NoThumbnail;
    }
    for (const std::string& warning : warningsOf(report))
        std::fprintf(stderr, "kesto-thumbnail: warning: %s\n", warning.c_str());
    return ExitStatus::Done;
}

CLI::Validator nameEndsIn(const std::string& extension) {
    return CLI::Validator(
        [extension](const std::string& name) {
            return lowerCase(name).ends_with(extension)
                       ? std::string()
                       : fmt::format("expected a name that ends in {}, found \"{}\"", extension, name);
        },
        "");
}

void addTimes(CLI::App& command, SheetOptions& options) {
    CLI::App* when = command.add_option_group("When", "One of these tells when tiles are taken");
    when->add_option("--count", options.count, "That many tiles, evenly spaced from the start")
        ->type_name("N")
        ->check(checkTileCount);
    when->add_option("--every", options.every, "A tile at the start and after each step")
        ->type_name("SECONDS")
        ->check(checkEvery);
    when->add_option("--times", options.times,
                     "Times with commas between them, in seconds or as hh:mm:ss.mmm")
        ->type_name("LIST")
        ->check(checkTimes);
    when->require_option(1);
}

void addFiles(CLI::App& command, SheetOptions& options) {
    command.add_option("INPUT", options.input, "The video or the project to show")->required();
    command.add_option("-o,--output", options.output, "The sheet to write: .png, .jpg, .jpeg, .gif or .bmp")
        ->type_name("FILE")
        ->required()
        ->check(checkOutputName);
    command.add_option("--vtt", options.vtt, "A WebVTT file to write, which tells players where tiles lie")
        ->type_name("FILE")
        ->check(nameEndsIn(".vtt"));
    command.add_option("--html", options.html, "A page to write, to look through the tiles in a browser")
        ->type_name("FILE")
        ->check(nameEndsIn(".html"));
}

} // namespace

void addSheetCommand(CLI::App& program, ExitStatus& status) {
    const auto options = std::make_shared<SheetOptions>();
    CLI::App* command =
        program.add_subcommand("sheet", "Write frames of a video or a project on one picture");
    addFiles(*command, *options);
    addTimes(*command, *options);
    command->add_option("--tile", options->tile, "The box that each tile fits, in pixels; 0 is no bound")
        ->type_name("WxH")
        ->capture_default_str()
        ->check(checkBounds);
    command
        ->add_option("--style", options->style,
                     "rows of at most 4000 pixels, or a grid; else what clips nothing")
        ->type_name("STYLE")
        ->check(checkStyle);
    command->add_flag("--json", options->json, "Report as one JSON object on standard output");
    command->callback([options, &status] { status = runSheet(*options); });
}

} // namespace KestoHost
