#include "platform/Mp4v2.h"

#include "mp4v2/SampleFile.h"

#include <cstdlib>
#include <exception>
#include <memory>

namespace {

using EngineBackend::SampleFacts;
using EngineBackend::TrackFacts;
using Mp4v2Backend::SampleFile;

struct MemoryDeleter {
    void operator()(std::uint8_t* memory) const { std::free(memory); }
};
using Memory = std::unique_ptr<std::uint8_t, MemoryDeleter>;

/// What `ask` says of the file; `otherwise` without a file, and when memory runs out on the way.
template <typename Answer, typename Ask>
Answer answerOf(MP4FileHandle file, Answer otherwise, Ask ask) noexcept {
    try {
        return file ? ask(*static_cast<SampleFile*>(file)) : otherwise;
    } catch (const std::exception&) {
        return otherwise;
    }
}

bool asksForAll(const char* type, std::uint8_t subType) {
    return !type && subType == 0;
}

std::span<std::byte> bytesAt(std::uint8_t* memory, const SampleFacts& sample) {
    return {reinterpret_cast<std::byte*>(memory), static_cast<std::size_t>(sample.bytes)};
}

bool readInto(SampleFile& file, MP4TrackId track, MP4SampleId id, const SampleFacts& sample,
              std::uint8_t** bytes, std::uint32_t capacity) {
    if (*bytes)
        return capacity >= sample.bytes && file.read(track, id, bytesAt(*bytes, sample));
    Memory memory(static_cast<std::uint8_t*>(std::malloc(static_cast<std::size_t>(sample.bytes) + 1)));
    if (!memory || !file.read(track, id, bytesAt(memory.get(), sample)))
        return false;
    *bytes = memory.release();
    return true;
}

} // namespace

MP4FileHandle MP4Read(const char* fileName) {
    try {
        return fileName ? SampleFile::open(fileName).release() : MP4_INVALID_FILE_HANDLE;
    } catch (const std::exception&) {
        return MP4_INVALID_FILE_HANDLE;
    }
}

void MP4Close(MP4FileHandle file, std::uint32_t /*flags*/) {
    delete static_cast<SampleFile*>(file);
}

std::uint32_t MP4GetNumberOfTracks(MP4FileHandle file, const char* type, std::uint8_t subType) {
    return answerOf(file, std::uint32_t{0}, [=](const SampleFile& opened) {
        return asksForAll(type, subType) ? static_cast<std::uint32_t>(opened.trackCount()) : 0;
    });
}

MP4TrackId MP4FindTrackId(MP4FileHandle file, std::uint16_t index, const char* type, std::uint8_t subType) {
    return answerOf(file, MP4_INVALID_TRACK_ID, [=](const SampleFile& opened) {
        return asksForAll(type, subType) ? opened.idOf(index).value_or(MP4_INVALID_TRACK_ID)
                                         : MP4_INVALID_TRACK_ID;
    });
}

const char* MP4GetTrackMediaDataName(MP4FileHandle file, MP4TrackId track) {
    return answerOf(file, static_cast<const char*>(nullptr),
                    [=](const SampleFile& opened) { return opened.formatOf(track); });
}

std::uint32_t MP4GetTrackTimeScale(MP4FileHandle file, MP4TrackId track) {
    return answerOf(file, std::uint32_t{0}, [=](const SampleFile& opened) {
        const TrackFacts* facts = opened.factsOf(track);
        return facts ? static_cast<std::uint32_t>(facts->ticksPerSecond) : 0;
    });
}

MP4Duration MP4GetTrackDuration(MP4FileHandle file, MP4TrackId track) {
    return answerOf(file, MP4_INVALID_DURATION, [=](const SampleFile& opened) {
        const TrackFacts* facts = opened.factsOf(track);
        return facts ? static_cast<MP4Duration>(facts->durationInTicks) : MP4_INVALID_DURATION;
    });
}

MP4SampleId MP4GetSampleIdFromTime(MP4FileHandle file, MP4TrackId track, MP4Timestamp when,
                                   bool wantSyncSample) {
    return answerOf(file, MP4_INVALID_SAMPLE_ID, [=](const SampleFile& opened) {
        const auto found = opened.sampleAt(track, when);
        const auto wanted = found && wantSyncSample ? opened.syncSampleFrom(track, *found) : found;
        return wanted.value_or(MP4_INVALID_SAMPLE_ID);
    });
}

std::uint32_t MP4GetSampleSize(MP4FileHandle file, MP4TrackId track, MP4SampleId sample) {
    return answerOf(file, std::uint32_t{0}, [=](const SampleFile& opened) {
        const auto found = opened.sampleOf(track, sample);
        return found ? static_cast<std::uint32_t>(found->bytes) : 0;
    });
}

bool MP4ReadSample(MP4FileHandle file, MP4TrackId track, MP4SampleId sample, std::uint8_t** bytes,
                   std::uint32_t* byteCount, MP4Timestamp* startTime, MP4Duration* duration,
                   MP4Duration* renderingOffset, bool* isSyncSample) {
    return answerOf(file, false, [=](SampleFile& opened) {
        const auto found = opened.sampleOf(track, sample);
        if (!found || !bytes || !byteCount || renderingOffset ||
            !readInto(opened, track, sample, *found, bytes, *byteCount))
            return false;
        *byteCount = static_cast<std::uint32_t>(found->bytes);
        if (startTime)
            *startTime = static_cast<MP4Timestamp>(found->start);
        if (duration)
            *duration = static_cast<MP4Duration>(found->end) - static_cast<MP4Duration>(found->start);
        if (isSyncSample)
            *isSyncSample = found->isSync;
        return true;
    });
}
