#include "engine/ffmpeg/SourceIo.h"

#include "engine/ffmpeg/Deadline.h"

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

#include <cstdio>
#include <new>

namespace EngineBackend {

namespace {

constexpr int bufferBytes = 64 * 1024;

int readFrom(void* opaque, std::uint8_t* into, int length) noexcept {
    try {
        auto& source = *static_cast<LimitedSource*>(opaque);
        if (source.deadline.isPassed())
            return AVERROR_EXIT;
        const std::int64_t got =
            source.bytes.read(std::as_writable_bytes(std::span(into, static_cast<std::size_t>(length))));
        if (got == 0)
            return AVERROR_EOF;
        return got < 0 ? AVERROR(EIO) : static_cast<int>(got);
    } catch (...) {
        return AVERROR(EIO);
    }
}

std::int64_t seekIn(void* opaque, std::int64_t offset, int whence) noexcept {
    try {
        auto& source = static_cast<LimitedSource*>(opaque)->bytes;
        const std::int64_t size = source.size();
        std::int64_t place = offset;
        switch (whence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return size < 0 ? AVERROR(ENOSYS) : size;
        case SEEK_SET:
            break;
        case SEEK_CUR:
            place += source.tell();
            break;
        case SEEK_END:
            if (size < 0)
                return AVERROR(ENOSYS);
            place += size;
            break;
        default:
            return AVERROR(EINVAL);
        }
        return source.seek(place) ? place : AVERROR(EIO);
    } catch (...) {
        return AVERROR(EIO);
    }
}

} // namespace

IoContextPtr makeSourceIo(LimitedSource& source) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(bufferBytes));
    if (!buffer)
        throw std::bad_alloc();
    IoContextPtr context(avio_alloc_context(buffer, bufferBytes, 0, &source, &readFrom, nullptr, &seekIn));
    if (!context) {
        av_free(buffer);
        throw std::bad_alloc();
    }
    context->seekable = source.bytes.canSeek() ? AVIO_SEEKABLE_NORMAL : 0;
    return context;
}

} // namespace EngineBackend
