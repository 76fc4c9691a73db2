#include "ThumbnailOptions.h"

#include <CLI/App.hpp>

#include <utility>

namespace KestoHost {

void addThumbnailOptions(CLI::App& command, const std::shared_ptr<ThumbnailOptions>& options,
                         const std::string& jsonHelp) {
    command.add_option("--size", options->size, "The box to fit, in pixels; 0 is no bound")
        ->type_name("WxH")
        ->capture_default_str()
        ->check(checkBounds);
    command.add_option("--time", options->time, "The time to show, for inputs that last")
        ->type_name("SECONDS")
        ->capture_default_str()
        ->check(checkSeconds)
        ->each([options](const std::string&) { options->isTimeAsked = true; });
    const auto takeTrack = [options](const std::string& text) { options->track = *parseTrack(text); };
    command
        .add_option_function<std::string>("--track", takeTrack,
                                          "The track to show, for inputs that have several")
        ->type_name("N")
        ->check(checkTrack);
    command.add_flag("--json", options->json, jsonHelp);
}

ThumbnailRequest requestFor(const ThumbnailOptions& options, std::string input, std::string output) {
    return {.input = std::move(input),
            .output = std::move(output),
            .bounds = *parseBounds(options.size),
            .seconds = *parseSeconds(options.time),
            .isTimeAsked = options.isTimeAsked,
            .track = options.track};
}

} // namespace KestoHost
