#include "engine/Engine.h"
#include "engine/ffmpeg/MediaFile.h"
#include "engine/ffmpeg/Remuxer.h"
#include "engine/ffmpeg/SampleTables.h"

#include "platform/Export.h"

extern "C" {
#include <libavutil/log.h>
}

namespace EngineBackend {

namespace {

class Engine : public IEngine {
public:
    // What goes wrong is told by values; the libraries' own messages would go to the host's terminal.
    Engine() { av_log_set_level(AV_LOG_QUIET); }

    Result<std::unique_ptr<IMediaFile>> openSource(std::unique_ptr<IByteSource> source,
                                                   const std::string& name) const override {
        return MediaFile::open(std::move(source), name);
    }

    Result<RemuxOutcome> remux(RemuxJob job, IByteTarget& target) const override {
        return Remuxer::run(std::move(job), target);
    }

    Result<std::unique_ptr<ISampleTables>> openSampleTables(std::unique_ptr<IByteSource> source,
                                                            const std::string& name) const override {
        return SampleTables::open(std::move(source), name);
    }
};

} // namespace

} // namespace EngineBackend

extern "C" KESTO_EXPORT EngineBackend::EngineEntry kestoEngine;

const EngineBackend::IEngine* kestoEngine() {
    static const EngineBackend::Engine engine;
    return &engine;
}
