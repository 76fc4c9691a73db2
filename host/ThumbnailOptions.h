#pragma once

#include "ThumbnailRequest.h"

#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace KestoHost {

/// The options that every command has which makes thumbnails.
struct ThumbnailOptions {
    std::string size = "0x92";
    std::string time = "0";
    bool isTimeAsked = false; ///< whether the command line has it
    int track = trackByPathAlone;
    bool json = false;
};

/// Adds `--size`, `--time`, `--track` and `--json`, the last with `jsonHelp`. `options` is shared with
/// the command.
void addThumbnailOptions(CLI::App& command, const std::shared_ptr<ThumbnailOptions>& options,
                         const std::string& jsonHelp);

/// What the checked options ask for.
ThumbnailRequest requestFor(const ThumbnailOptions& options, std::string input, std::string output);

} // namespace KestoHost
