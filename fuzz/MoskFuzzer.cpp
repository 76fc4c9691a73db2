#include "platform/MOSK.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr int mostTracks = 8;

void require(bool condition) {
    if (!condition)
        std::abort();
}

/// A file in memory that has a path.
class NamedBytes {
public:
    NamedBytes()
        : descriptor(::memfd_create("recording", MFD_CLOEXEC)) {
        require(descriptor >= 0);
    }
    ~NamedBytes() { ::close(descriptor); }
    NamedBytes(const NamedBytes&) = delete;
    NamedBytes& operator=(const NamedBytes&) = delete;

    void fill(const std::uint8_t* data, std::size_t size) const {
        require(::ftruncate(descriptor, 0) == 0);
        require(::pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
    }
    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

private:
    int descriptor;
};

void readFrame(MOSK::MP4TrackReader& track) {
    constexpr std::uint64_t mostPixels = 1'000'000;
    const std::uint64_t pixels = std::uint64_t{track.width()} * track.height();
    if (pixels > mostPixels)
        return;
    // One byte more, so that there is a buffer for no pixels, too.
    std::string buffer(pixels * 4 + 1, '\x7');
    double start = 0;
    const bool isShown = track.decodeFrameAtTime(0.5, reinterpret_cast<unsigned char*>(buffer.data()),
                                                 static_cast<unsigned int>(pixels * 4), &start);
    require(!isShown || track.kind() == 0);
    require(buffer.back() == '\x7');
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // NOLINTBEGIN(concurrency-mt-unsafe): before any thread
    ::setenv("KESTO_PIXEL_BUDGET", "1000000", 1);
    return ::setenv("KESTO_VIDEO_TIME_LIMIT_MS", "1000", 0);
    // NOLINTEND(concurrency-mt-unsafe)
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const NamedBytes file;
    file.fill(data, size);
    const auto reader =
        MOSK::Reader::create(file.path(), MOSK::AudioFormat::create16BitSignedInterleaved(44100, 2), nullptr);
    if (!reader)
        return 0;
    int left = mostTracks;
    for (const auto& track : reader->tracks()) {
        require(track->kind() >= 0 && track->kind() <= 2);
        require(track->format().empty() || track->format().size() == 4);
        require(track->typeCode() == 0 || (track->typeCode() >= 100 && track->typeCode() <= 103));
        if (left-- > 0)
            readFrame(*track);
    }
    return 0;
}
