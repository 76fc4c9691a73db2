#pragma once

#include "engine/Engine.h"
#include "engine/EngineError.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace MOSK {

/// A file and its tracks. Those that are decoded at the same time each read from a place of their own.
class Recording {
public:
    /// `NotMedia` for a container of another family.
    static EngineBackend::Result<std::shared_ptr<Recording>> open(const std::string& path);

    /// In the order of the file; valid while the recording is.
    std::span<const EngineBackend::StreamFacts> tracks() const { return facts; }

    EngineBackend::Result<std::unique_ptr<EngineBackend::IVideoReader>> readVideo(int stream);

private:
    Recording(std::string name, std::unique_ptr<EngineBackend::IMediaFile> file);

    std::string path;
    std::unique_ptr<EngineBackend::IMediaFile> opened; ///< until the first track takes it
    std::vector<EngineBackend::StreamFacts> facts;
};

} // namespace MOSK
