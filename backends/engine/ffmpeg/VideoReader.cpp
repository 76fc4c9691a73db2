#include "engine/ffmpeg/VideoReader.h"

#include "engine/ffmpeg/PixelBudget.h"
#include "engine/ffmpeg/Ticks.h"

#include "system/PixelBudget.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <thread>

namespace EngineBackend {

namespace {

constexpr std::size_t mostKept = 3;
constexpr std::int64_t mostKeptPixels = 32'000'000; ///< the latest picture apart

std::int64_t pixelsOf(PictureSize size) {
    return std::int64_t{size.width} * size.height;
}

/// One more than processors, since threads wait for each other's frames. Many more help one stream little.
int threadsFor(const VideoOptions& options) {
    constexpr int most = 4;
    const int processors = static_cast<int>(std::thread::hardware_concurrency());
    const int share = processors / std::max(options.readersAtOnce, 1);
    return share > 1 ? std::min(share + 1, most) : 1;
}

bool covers(const FoundFrame& found, std::int64_t ticks) {
    return found.frame && found.start <= ticks && (ticks < found.end || found.isLast);
}

} // namespace

VideoReader::VideoReader(std::shared_ptr<Demuxer> source, int streamIndex,
                         std::unique_ptr<VideoDecoder> frames)
    : demuxer(std::move(source))
    , stream(streamIndex)
    , decoder(std::move(frames))
    , finder(*demuxer, *decoder, stream) {}

Result<std::unique_ptr<IVideoReader>> VideoReader::open(std::shared_ptr<Demuxer> demuxer, int stream,
                                                        const VideoOptions& options) {
    const auto streams = demuxer->streams();
    const auto refuse = [&](ErrorKind kind, const std::string& why) {
        return failure(kind, fmt::format("{}: stream {}: {}", demuxer->name(), stream, why));
    };
    if (stream < 0 || static_cast<std::size_t>(stream) >= streams.size())
        return refuse(ErrorKind::NoSuchStream, "there is no such stream");
    const StreamFacts& facts = streams[static_cast<std::size_t>(stream)];
    if (facts.kind != StreamKind::Video)
        return refuse(ErrorKind::NoSuchStream, "a stream of video is expected");
    if (facts.timeBase <= 0)
        return refuse(ErrorKind::Damaged, "a positive time base is expected");
    if (!isWithinPixelBudget(facts.video.codedSize) || !isWithinPixelBudget(facts.video.displaySize))
        return refuse(ErrorKind::TooLarge,
                      fmt::format("pictures of 1 to {} pixels are expected, these have {} x {}",
                                  SystemBackend::pixelBudget(), facts.video.displaySize.width,
                                  facts.video.displaySize.height));
    auto decoder = VideoDecoder::open(demuxer->stream(stream), threadsFor(options));
    if (!decoder)
        return refuse(decoder.error().kind, decoder.error().message);
    demuxer->selectStream(stream);
    return std::unique_ptr<IVideoReader>(new VideoReader(std::move(demuxer), stream, std::move(*decoder)));
}

bool VideoReader::canScaleTo(PictureSize size) const {
    return size == PictureSize{} || isWithinPixelBudget(size);
}

Result<TimedPicture> VideoReader::pictureAt(Rational time, PictureSize size) {
    const VideoFacts& video = facts().video;
    if (size == PictureSize{})
        size = video.displaySize;
    const std::int64_t ticks = ticksAt(time, facts().timeBase);
    if (const KeptPicture* same = findKept(ticks, size))
        return same->timed;
    const auto found = frameAt(ticks);
    if (!found)
        return tl::unexpected(named(found.error()));
    const auto picture = converter.convert(*found->frame, size, video.orientation);
    if (!picture)
        return tl::unexpected(named(picture.error()));
    const TimedPicture timed = {*picture,
                                {.start = secondsOf(found->start, facts().timeBase),
                                 .end = secondsOf(found->end, facts().timeBase),
                                 .isKeyFrame = isKeyFrame(*found->frame)}};
    if (demuxer->readingStop() != ReadingStop::Interruption)
        keep(ticks, *found, timed);
    return timed;
}

Result<FoundFrame> VideoReader::frameAt(std::int64_t ticks) {
    if (covers(last, ticks))
        return last;
    demuxer->deadline().begin();
    const auto found = finder.find(ticks);
    if (demuxer->deadline().isPassed())
        return failure(ErrorKind::OutOfTime, "the frame could not be found in time");
    if (!found)
        return failure(ErrorKind::Damaged, "no frame could be decoded");
    const bool isSure = demuxer->readingStop() != ReadingStop::Interruption;
    last = isSure ? *found : FoundFrame();
    return *found;
}

const VideoReader::KeptPicture* VideoReader::findKept(std::int64_t ticks, PictureSize size) const {
    const auto found = std::find_if(kept.begin(), kept.end(), [&](const KeptPicture& picture) {
        return picture.from <= ticks && ticks < picture.until && picture.timed.picture->size == size;
    });
    return found == kept.end() ? nullptr : &*found;
}

void VideoReader::keep(std::int64_t ticks, const FoundFrame& found, const TimedPicture& timed) {
    std::int64_t pixels = 0;
    for (const KeptPicture& picture : kept)
        pixels += pixelsOf(picture.timed.picture->size);
    while (!kept.empty() && (kept.size() == mostKept || pixels > mostKeptPixels)) {
        pixels -= pixelsOf(kept.front().timed.picture->size);
        kept.erase(kept.begin());
    }
    // All times between the frame and one beyond the stream's ends that gave it give it as well.
    constexpr std::int64_t always = std::numeric_limits<std::int64_t>::max();
    const std::int64_t until = found.isLast ? always : std::max(ticks + 1, found.end);
    kept.push_back({std::min(ticks, found.start), until, timed});
}

Error VideoReader::named(Error error) const {
    error.message = fmt::format("{}: stream {}: {}", demuxer->name(), stream, error.message);
    return error;
}

} // namespace EngineBackend
