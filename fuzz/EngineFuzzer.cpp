#include "engine/Engine.h"
#include "engine/EngineModule.h"

#include "support/video/MemorySource.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

/// Reads every byte, so that a sanitizer sees them.
unsigned sumOf(const EngineBackend::Picture& picture) {
    unsigned sum = 0;
    const std::size_t bytes =
        static_cast<std::size_t>(picture.stride()) * static_cast<std::size_t>(picture.size.height);
    for (std::size_t i = 0; i < bytes; ++i)
        sum += picture.pixels[i];
    return sum;
}

void readFrames(EngineBackend::IVideoReader& reader) {
    constexpr EngineBackend::PictureSize size = {32, 24};
    for (const int time : {0, 1, 1000}) {
        const auto found = reader.pictureAt(time, size);
        if (!found)
            continue;
        require(found->picture->size == size);
        require(found->timing.start <= found->timing.end);
        (void)sumOf(*found->picture);
    }
}

void readTables(EngineBackend::ISampleTables& tables) {
    constexpr std::int64_t mostSamples = 100;
    constexpr std::int64_t mostBytes = 1 << 20;
    for (std::size_t track = 0; track < tables.tracks().size(); ++track) {
        const std::int64_t count = std::min(tables.tracks()[track].sampleCount, mostSamples);
        for (std::int64_t sample = 0; sample < count; ++sample) {
            const std::int64_t bytes = tables.sampleOf(track, sample).bytes;
            require(bytes >= 0);
            std::vector<std::byte> content(static_cast<std::size_t>(std::min(bytes, mostBytes)));
            (void)tables.readSample(track, sample, content);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // NOLINTBEGIN(concurrency-mt-unsafe): before any thread
    ::setenv("KESTO_PIXEL_BUDGET", "1000000", 1);
    return ::setenv("KESTO_VIDEO_TIME_LIMIT_MS", "1000", 0);
    // NOLINTEND(concurrency-mt-unsafe)
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto engine = EngineBackend::engine();
    require(engine.has_value());
    const std::string content(reinterpret_cast<const char*>(data), size);
    if (const auto tables = (*engine)->openSampleTables(std::make_unique<MemorySource>(content), "input"))
        readTables(**tables);
    const auto file = (*engine)->openSource(std::make_unique<MemorySource>(content), "input");
    if (!file)
        return 0;
    (void)(*file)->keyFrameTimes((*file)->bestVideoStream());
    const auto reader = (*file)->readVideo((*file)->bestVideoStream(), {.readersAtOnce = 1000});
    if (reader)
        readFrames(**reader);
    return 0;
}
