#include "PackCommand.h"

#include "LetterCase.h"
#include "pack/PackReport.h"
#include "pack/RecordingPacker.h"

#include <CLI/App.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <memory>

namespace KestoHost {

namespace {

struct PackOptions {
    PackRequest request;
    bool json = false;
};

ExitStatus runPack(const PackOptions& options) {
    const PackReport report = packRecording(options.request);
    if (options.json)
        std::puts(jsonText(report).c_str());
    if (report.failure) {
        std::fprintf(stderr, "kesto-thumbnail: %s\n", report.failure->message.c_str());
        return ExitStatus::NoThumbnail;
    }
    if (!report.warning.empty())
        std::fprintf(stderr, "kesto-thumbnail: warning: %s\n", report.warning.c_str());
    return ExitStatus::Done;
}

std::string checkRecordingName(const std::string& path) {
    const std::string name = lowerCase(path);
    if (name.ends_with(".mosk") || name.ends_with(".plumex"))
        return {};
    return fmt::format("expected a name that ends in .mosk or .plumex, found \"{}\"", path);
}

std::string checkIsNamed(const std::string& path) {
    return path.empty() ? "expected the name of a file, found \"\"" : "";
}

} // namespace

void addPackCommand(CLI::App& program, ExitStatus& status) {
    const auto options = std::make_shared<PackOptions>();
    PackRequest& request = options->request;
    CLI::App* command =
        program.add_subcommand("pack", "Make a recording of ordinary files, without encoding anew");
    const auto addInput = [command](const char* name, std::string& input, const char* help) {
        return command->add_option(name, input, help)->type_name("FILE")->check(checkIsNamed);
    };
    addInput("--screen", request.screen, "A video of the screen")->required();
    addInput("--camera", request.camera, "A video of the camera");
    addInput("--audio", request.audio, "What the microphone heard");
    addInput("--system-audio", request.systemAudio, "What the computer played");
    addInput("--events", request.events, "Data that goes with the recording, taken as it is");
    command->add_option("-o,--output", request.output, "The recording to write: .mosk or .plumex")
        ->type_name("FILE")
        ->required()
        ->check(checkRecordingName);
    command->add_flag("--json", options->json, "Report as one JSON object on standard output");
    command->callback([options, &status] { status = runPack(*options); });
}

} // namespace KestoHost
