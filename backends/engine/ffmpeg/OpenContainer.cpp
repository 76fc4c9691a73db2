#include "engine/ffmpeg/OpenContainer.h"

#include "engine/ffmpeg/Deadline.h"

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

Result<FormatContextPtr> openContainer(AVIOContext& io, Deadline& limit, const std::string& name,
                                       const ContainerChoice& choice) {
    OpeningOptions options(choice);
    AVFormatContext* opening = avformat_alloc_context();
    if (!opening)
        throw std::bad_alloc();
    opening->pb = &io;
    opening->io_open = &refuseFurtherFile;
    opening->interrupt_callback = {&mustStop, &limit};
    opening->format_whitelist = av_strdup(choice.formats);
    const int status = avformat_open_input(&opening, name.c_str(), nullptr, options.get());
    FormatContextPtr context(opening);
    if (status == AVERROR(ENOMEM))
        return failure(ErrorKind::TooLarge, fmt::format("{}: not enough memory to open it", name));
    if (limit.isPassed())
        return failure(ErrorKind::OutOfTime, fmt::format("{}: opening it took too long", name));
    if (status < 0)
        return failure(ErrorKind::NotMedia, fmt::format("{}: a container of video or audio is expected ({})",
                                                        name, textOfError(status)));
    return context;
}

} // namespace EngineBackend
