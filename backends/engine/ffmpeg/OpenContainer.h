#pragma once

#include "engine/ByteSource.h"
#include "engine/EngineError.h"
#include "engine/ffmpeg/Deadline.h"
#include "engine/ffmpeg/Handles.h"
#include "engine/ffmpeg/SourceIo.h"

#include <memory>
#include <string>

namespace EngineBackend {

struct ContainerChoice {
    const char* formats;           ///< libavformat's names, with commas; for good
    bool ignoresEditLists = false; ///< of the MP4 family
};

/// A container whose header was read, with all that it is read from. If it leads to other files, it does not
/// get at them.
class OpenContainer {
public:
    /// `name` stands for the source in messages.
    static Result<std::unique_ptr<OpenContainer>>
    open(std::unique_ptr<IByteSource> source, const std::string& name, const ContainerChoice& choice);

    ~OpenContainer();
    OpenContainer(const OpenContainer&) = delete;
    OpenContainer& operator=(const OpenContainer&) = delete;

    const std::string& name() const { return sourceName; }
    IByteSource& source() const { return *bytes; }
    Deadline& deadline() { return limit; }
    AVFormatContext& context() const { return *format; }

    /// Reads the header again, so that the first packet is next; `context` is another one then. False when
    /// the source does not give the same streams again; the context stays as it was.
    bool reopen();

private:
    OpenContainer(std::unique_ptr<IByteSource> source, const std::string& name,
                  const ContainerChoice& chosen);

    Result<FormatContextPtr> readHeader(AVIOContext& from);

    std::string sourceName;
    std::unique_ptr<IByteSource> bytes;
    ContainerChoice choice;
    Deadline limit;
    LimitedSource limited;
    IoContextPtr io;
    FormatContextPtr format; ///< reads from `io` until it is closed
};

/// What FFmpeg says of one of its negative results.
std::string textOfError(int error);

} // namespace EngineBackend
