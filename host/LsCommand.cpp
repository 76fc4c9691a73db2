#include "LsCommand.h"

#include "ls/ContainerReport.h"

#include <CLI/App.hpp>

#include <cstdio>
#include <memory>

namespace KestoHost {

namespace {

struct LsOptions {
    std::string input;
    bool json = false;
};

ExitStatus runLs(const LsOptions& options) {
    const ContainerContents contents = contentsOf(options.input);
    if (options.json)
        std::puts(jsonText(contents).c_str());
    if (contents.failure) {
        std::fprintf(stderr, "kesto-thumbnail: %s\n", contents.failure->message.c_str());
        return ExitStatus::NoThumbnail;
    }
    if (!options.json)
        std::fputs(tableText(contents).c_str(), stdout);
    return ExitStatus::Done;
}

} // namespace

void addLsCommand(CLI::App& program, ExitStatus& status) {
    const auto options = std::make_shared<LsOptions>();
    CLI::App* command = program.add_subcommand("ls", "List the members or tracks of a container");
    command->add_option("FILE", options->input, "A .plumex or .mosk recording, or a video or sound file")
        ->required();
    command->add_flag("--json", options->json, "List as one JSON object on standard output");
    command->callback([options, &status] { status = runLs(*options); });
}

} // namespace KestoHost
