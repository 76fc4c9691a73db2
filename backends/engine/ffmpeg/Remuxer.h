#pragma once

#include "engine/EngineError.h"
#include "engine/Remux.h"
#include "engine/ffmpeg/Handles.h"
#include "engine/ffmpeg/RemuxInput.h"
#include "engine/ffmpeg/TargetIo.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct AVOutputFormat;

namespace EngineBackend {

/// Copies packets from several files into one container, interleaved by their times, so that it holds few at
/// a time.
class Remuxer {
public:
    static Result<RemuxOutcome> run(RemuxJob job, IByteTarget& target);

private:
    Remuxer(RemuxContainer wanted, IByteTarget& target)
        : container(wanted)
        , place{target} {}

    Result<void> openInputs(std::vector<RemuxTrack> tracks);
    Result<void> openOutput(const std::vector<RemuxData>& data);
    Result<void> addTracks(const std::vector<RemuxData>& data);
    Result<void> addTrack(const RemuxInput& input);
    void addDataTrack(const RemuxData& data);
    Result<void> writeData(const std::vector<RemuxData>& data);
    Result<void> writePackets();
    Result<void> finish(const std::vector<RemuxData>& data);
    Result<void> write(PacketPtr packet, std::size_t track, const std::string& name);

    const AVOutputFormat* chooseFormat() const;
    std::size_t findEarliest() const;
    FrameOrder frameOrder() const;
    tl::unexpected<Error> explain(const std::string& name, const std::string& what, int status) const;

    RemuxContainer container;
    TargetPlace place;
    IoContextPtr io;
    OutputContextPtr output; ///< writes to `io`
    std::vector<std::unique_ptr<RemuxInput>> inputs;
};

} // namespace EngineBackend
