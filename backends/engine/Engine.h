#pragma once

#include "engine/ByteSource.h"
#include "engine/EngineError.h"
#include "engine/Remux.h"
#include "engine/SampleTables.h"
#include "engine/StreamFacts.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace EngineBackend {

/// From `start` until before `end`, in seconds from the presentation's start. `end` equals `start` when it is
/// not known.
struct PictureTiming {
    Rational start{0};
    Rational end{0};
    bool isKeyFrame = false;
};

/// Upright, rows from the top without gaps: premultiplied B, G, R, A in memory.
struct Picture {
    PictureSize size;
    std::unique_ptr<std::uint8_t[]> pixels;

    int stride() const { return size.width * 4; }
};

/// Pictures that were asked for again are the same object.
struct TimedPicture {
    std::shared_ptr<const Picture> picture;
    PictureTiming timing;
};

/// The pictures of one video stream. One thread at a time.
class IVideoReader {
public:
    virtual ~IVideoReader() = default;

    virtual const StreamFacts& facts() const = 0;

    /// Whether pictures of that size may be asked for: 0 by 0, or above 0 and within the pixel budget.
    virtual bool canScaleTo(PictureSize size) const = 0;

    /// The picture whose interval covers `time`; the first before the start, the last after the end. Scaled
    /// to `size`, where 0 by 0 is the display size. After a refusal it may be asked again.
    virtual Result<TimedPicture> pictureAt(Rational time, PictureSize size) = 0;
};

struct VideoOptions {
    int readersAtOnce = 1; ///< how many readers will be busy at a time; they share the processor
};

/// An open file. One thread at a time.
class IMediaFile {
public:
    virtual ~IMediaFile() = default;

    /// The container's short name, such as "matroska,webm".
    virtual std::string format() const = 0;
    /// In seconds; nothing when it is not known.
    virtual std::optional<Rational> duration() const = 0;
    /// In the order of the file; valid while the file is.
    virtual std::span<const StreamFacts> streams() const = 0;
    /// The stream of video that a player would show, or -1.
    virtual int bestVideoStream() const = 0;
    /// When key frames of a stream are shown, as far as the file has told by now; in order.
    virtual std::vector<Rational> keyFrameTimes(int stream) const = 0;

    /// A reader of one stream. It shares the file's place, so that a file is for one reader at a time; it may
    /// outlive the file.
    virtual Result<std::unique_ptr<IVideoReader>> readVideo(int stream, const VideoOptions& options) = 0;
};

/// The door to all that decodes. Without state; any thread.
class IEngine {
public:
    virtual ~IEngine() = default;

    /// `name` stands for the source in messages, and its ending may hint at the format.
    virtual Result<std::unique_ptr<IMediaFile>> openSource(std::unique_ptr<IByteSource> source,
                                                           const std::string& name) const = 0;

    /// Copies encoded packets into a new container, as they are. `Unsupported` where that can't hold them;
    /// `Unwritable` when the target fails. What was written is of no use after an error.
    virtual Result<RemuxOutcome> remux(RemuxJob job, IByteTarget& target) const = 0;

    /// Of a file of the MP4 family.
    virtual Result<std::unique_ptr<ISampleTables>> openSampleTables(std::unique_ptr<IByteSource> source,
                                                                    const std::string& name) const = 0;
};

/// The module's one entry point, a C function.
using EngineEntry = const IEngine*();

constexpr const char* engineEntryName = "kestoEngine";

} // namespace EngineBackend
