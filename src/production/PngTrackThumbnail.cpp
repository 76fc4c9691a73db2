#include "production/PngTrackThumbnail.h"

#include "platform/Mp4v2.h"
#include "platform/Stream.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "scheduling/imagefile/TextConversion.h"

#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>

namespace KestoThumbnailer {

namespace {

struct MovieCloser {
    void operator()(void* movie) const { MP4Close(movie, 0); }
};
struct MemoryDeleter {
    void operator()(std::uint8_t* memory) const { std::free(memory); }
};
struct StreamReleaser {
    void operator()(IStream* stream) const { stream->Release(); }
};
using Movie = std::unique_ptr<void, MovieCloser>;
using Memory = std::unique_ptr<std::uint8_t, MemoryDeleter>;
using Stream = std::unique_ptr<IStream, StreamReleaser>;

struct PngTrack {
    MP4TrackId id = MP4_INVALID_TRACK_ID;
    std::uint32_t ticksPerSecond = 0;
};

/// A PNG file.
struct Still {
    Memory bytes;
    std::uint32_t size = 0;
};

bool HoldsPngs(MP4FileHandle movie, MP4TrackId track) {
    const char* format = MP4GetTrackMediaDataName(movie, track);
    return format && std::string_view(format) == "png ";
}

// Deliberate: the search goes on behind a match, so that the last such track wins.
std::optional<PngTrack> FindPngTrack(MP4FileHandle movie) {
    std::optional<PngTrack> found;
    const std::uint32_t count = MP4GetNumberOfTracks(movie, nullptr, 0);
    for (std::uint32_t i = 0; i < count; ++i) {
        const MP4TrackId track = MP4FindTrackId(movie, static_cast<std::uint16_t>(i), nullptr, 0);
        if (!HoldsPngs(movie, track))
            continue;
        found = PngTrack{track, MP4GetTrackTimeScale(movie, track)};
        (void)MP4GetTrackDuration(movie, track); // the calls and their order are what others see of this
    }
    return found;
}

/// Toward zero. What no time stamp holds is behind the end of any track.
MP4Timestamp TicksAt(double time, const PngTrack& track) {
    const double ticks = static_cast<double>(track.ticksPerSecond) * time;
    constexpr double limit = 18446744073709551616.0; // 2 to the power of 64
    return ticks > -1 && ticks < limit ? static_cast<MP4Timestamp>(ticks)
                                       : std::numeric_limits<MP4Timestamp>::max();
}

Still ReadStill(MP4FileHandle movie, const PngTrack& track, double time) {
    const MP4SampleId sample = MP4GetSampleIdFromTime(movie, track.id, TicksAt(time, track),
                                                      /*wantSyncSample=*/false);
    if (sample == MP4_INVALID_SAMPLE_ID)
        return {};
    std::uint32_t size = MP4GetSampleSize(movie, track.id, sample);
    Memory memory(size > 0 ? static_cast<std::uint8_t*>(std::malloc(size)) : nullptr);
    std::uint8_t* bytes = memory.get();
    if (!bytes || !MP4ReadSample(movie, track.id, sample, &bytes, &size, nullptr, nullptr, nullptr, nullptr))
        return {};
    return {std::move(memory), size};
}

/// Null when it can't be decoded to its end.
std::unique_ptr<Gdiplus::Bitmap> Decode(const Still& still) {
    const Stream stream(SHCreateMemStream(still.bytes.get(), still.size));
    if (!stream)
        return nullptr;
    std::unique_ptr<Gdiplus::Bitmap> bitmap(new Gdiplus::Bitmap(stream.get()));
    if (bitmap && (bitmap->GetLastStatus() != Gdiplus::Ok || bitmap->ForceValidation() != Gdiplus::Ok))
        bitmap.reset();
    return bitmap;
}

std::unique_ptr<Gdiplus::Bitmap> DecodeStillOf(const std::wstring& path, double time) {
    const Movie movie(MP4Read(Utf8FromWide(path).c_str()));
    if (!movie)
        return nullptr;
    const std::optional<PngTrack> track = FindPngTrack(movie.get());
    if (!track)
        return nullptr;
    const Still still = ReadStill(movie.get(), *track, time);
    return still.bytes ? Decode(still) : nullptr;
}

} // namespace

Gdiplus::Bitmap* GetThumbnailForPngTrack(const std::wstring& path, double time, int width, int height) {
    std::unique_ptr<Gdiplus::Bitmap> bitmap = DecodeStillOf(path, time);
    if (!bitmap)
        return nullptr;
    // Deliberate: no look at whether the bounds are there, as a still is larger than none.
    if (static_cast<int>(bitmap->GetWidth()) <= width && static_cast<int>(bitmap->GetHeight()) <= height)
        return bitmap.release();
    return GdiplusBitmapThumbnailingHelper::GenerateThumbnailBitmap(bitmap.get(), width, height);
}

} // namespace KestoThumbnailer
