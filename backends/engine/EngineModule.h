#pragma once

#include "engine/EngineError.h"

#include <memory>
#include <string>

namespace EngineBackend {

class IEngine;
class IMediaFile;
class ISampleTables;

/// The engine of `kesto_engine.so`, which lies in the folder `KestoThumbnailer` beside this library. The
/// first call loads it, with all of FFmpeg, for good; so call it when something is to be decoded and not
/// before. `Unavailable` when the module or its libraries are missing. Any thread.
Result<const IEngine*> engine();

// A `path` is looked up as `platform/System.h` tells. A file that can't be read does not load the engine.

Result<std::unique_ptr<IMediaFile>> openMediaFile(const std::string& path);
Result<std::unique_ptr<ISampleTables>> openSampleTables(const std::string& path);

} // namespace EngineBackend
