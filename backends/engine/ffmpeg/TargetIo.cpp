#include "engine/ffmpeg/TargetIo.h"

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cstdio>
#include <new>
#include <span>

namespace EngineBackend {

namespace {

constexpr int bufferBytes = 256 * 1024;

int writeTo(void* opaque, std::uint8_t* bytes, int length) noexcept {
    auto& target = *static_cast<TargetPlace*>(opaque);
    try {
        const std::span from(bytes, static_cast<std::size_t>(length));
        if (target.bytes.writeAt(target.place, std::as_bytes(from))) {
            target.place += length;
            target.size = std::max(target.size, target.place);
            return length;
        }
    } catch (...) { // told as any other failure of the target
    }
    target.hasFailed = true;
    return AVERROR(EIO);
}

std::int64_t seekIn(void* opaque, std::int64_t offset, int whence) noexcept {
    auto& target = *static_cast<TargetPlace*>(opaque);
    std::int64_t place = offset;
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return target.size;
    case SEEK_SET:
        break;
    case SEEK_CUR:
        place += target.place;
        break;
    case SEEK_END:
        place += target.size;
        break;
    default:
        return AVERROR(EINVAL);
    }
    if (place < 0)
        return AVERROR(EINVAL);
    target.place = place;
    return place;
}

} // namespace

IoContextPtr makeTargetIo(TargetPlace& target) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(bufferBytes));
    if (!buffer)
        throw std::bad_alloc();
    IoContextPtr context(
        avio_alloc_context(buffer, bufferBytes, /*write_flag=*/1, &target, nullptr, &writeTo, &seekIn));
    if (!context) {
        av_free(buffer);
        throw std::bad_alloc();
    }
    context->seekable = AVIO_SEEKABLE_NORMAL;
    return context;
}

} // namespace EngineBackend
