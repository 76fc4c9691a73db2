#pragma once

#include "engine/ByteSource.h"
#include "engine/EngineError.h"
#include "engine/StreamFacts.h"

#include <memory>
#include <string>
#include <vector>

namespace EngineBackend {

/// Bytes that are written to places in any order, and read back. One thread at a time.
class IByteTarget {
public:
    virtual ~IByteTarget() = default;

    /// False after an error of the medium.
    virtual bool writeAt(std::int64_t place, std::span<const std::byte> bytes) = 0;
    /// All of `into`, or false.
    virtual bool readAt(std::int64_t place, std::span<std::byte> into) = 0;
};

enum class RemuxContainer {
    Movie, ///< MP4 where that has a place for every codec, else its QuickTime form
    Avi,
    Asf,
    Wav,
};

/// The stream of that kind that a player would choose becomes a track.
struct RemuxTrack {
    std::unique_ptr<IByteSource> source;
    std::string name; ///< of the source, in messages
    StreamKind kind = StreamKind::Video;
    std::string handlerName; ///< of the new track; only a movie has such names
};

/// All of the source becomes the one sample of a track behind the others, from the start on. Only a movie has
/// such tracks.
struct RemuxData {
    std::unique_ptr<IByteSource> source;
    std::string name;
    std::string handlerName;
    std::string format; ///< four characters
};

struct RemuxJob {
    std::vector<RemuxTrack> tracks; ///< in their new order; each begins at time 0
    std::vector<RemuxData> data;
    RemuxContainer container = RemuxContainer::Movie;
};

struct RemuxOutcome {
    bool isQuickTime = false; ///< a movie of this form
};

} // namespace EngineBackend
