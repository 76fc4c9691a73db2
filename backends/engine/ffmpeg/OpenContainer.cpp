#include "engine/ffmpeg/OpenContainer.h"

#include <fmt/format.h>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/mem.h>
}

#include <new>

namespace EngineBackend {

namespace {

/// Of options that libavformat takes as it opens; it leaves those that it does not know.
class OpeningOptions {
public:
    explicit OpeningOptions(const ContainerChoice& choice) {
        if (choice.ignoresEditLists && av_dict_set(&options, "ignore_editlist", "1", 0) < 0)
            throw std::bad_alloc();
    }
    ~OpeningOptions() { av_dict_free(&options); }
    OpeningOptions(const OpeningOptions&) = delete;
    OpeningOptions& operator=(const OpeningOptions&) = delete;

    AVDictionary** get() { return &options; }

private:
    AVDictionary* options = nullptr;
};

int refuseFurtherFile(AVFormatContext*, AVIOContext** io, const char*, int, AVDictionary**) noexcept {
    *io = nullptr;
    return AVERROR(EACCES);
}

int mustStop(void* deadline) noexcept {
    return static_cast<const Deadline*>(deadline)->isPassed() ? 1 : 0;
}

} // namespace

std::string textOfError(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(error, text, sizeof text);
    return text;
}

OpenContainer::OpenContainer(std::unique_ptr<IByteSource> source, const std::string& name,
                             const ContainerChoice& chosen)
    : sourceName(name)
    , bytes(std::move(source))
    , choice(chosen)
    , limited{*bytes, limit}
    , io(makeSourceIo(limited)) {}

OpenContainer::~OpenContainer() = default;

Result<std::unique_ptr<OpenContainer>> OpenContainer::open(std::unique_ptr<IByteSource> source,
                                                           const std::string& name,
                                                           const ContainerChoice& choice) {
    std::unique_ptr<OpenContainer> container(new OpenContainer(std::move(source), name, choice));
    auto read = container->readHeader(*container->io);
    if (!read)
        return tl::unexpected(read.error());
    container->format = std::move(*read);
    return container;
}

bool OpenContainer::reopen() {
    const std::int64_t place = bytes->tell();
    if (!bytes->seek(0))
        return false;
    IoContextPtr anew = makeSourceIo(limited);
    auto read = readHeader(*anew);
    if (!read || (*read)->nb_streams < format->nb_streams) {
        (void)bytes->seek(place);
        return false;
    }
    format = std::move(*read); // closes the old one while it still has what it reads from
    io = std::move(anew);
    return true;
}

Result<FormatContextPtr> OpenContainer::readHeader(AVIOContext& from) {
    OpeningOptions options(choice);
    AVFormatContext* opening = avformat_alloc_context();
    if (!opening)
        throw std::bad_alloc();
    opening->pb = &from;
    opening->io_open = &refuseFurtherFile;
    opening->interrupt_callback = {&mustStop, &limit};
    opening->format_whitelist = av_strdup(choice.formats);
    const int status = avformat_open_input(&opening, sourceName.c_str(), nullptr, options.get());
    FormatContextPtr context(opening);
    if (status == AVERROR(ENOMEM))
        return failure(ErrorKind::TooLarge, fmt::format("{}: not enough memory to open it", sourceName));
    if (limit.isPassed())
        return failure(ErrorKind::OutOfTime, fmt::format("{}: opening it took too long", sourceName));
    if (status < 0)
        return failure(ErrorKind::NotMedia, fmt::format("{}: a container of video or audio is expected ({})",
                                                        sourceName, textOfError(status)));
    return context;
}

} // namespace EngineBackend
