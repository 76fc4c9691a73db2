#include "video/RecordingPicture.h"

#include "LetterCase.h"
#include "Paths.h"
#include "video/MovingInput.h"

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/platform/MOSK.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace KestoHost {

namespace {

using Tracks = std::vector<boost::shared_ptr<MOSK::MP4TrackReader>>;

// What `MOSK::MP4TrackReader` tells.
constexpr std::int32_t videoKind = 0;
constexpr std::int32_t screenType = 100;
constexpr std::int32_t cameraType = 101;

bool isShown(const MOSK::MP4TrackReader& track) {
    return track.kind() == videoKind && (track.typeCode() == screenType || track.typeCode() == cameraType);
}

Failure noVideo(std::string message) {
    return {"no-video", std::move(message), /*withoutPicture=*/true};
}

/// Nothing when the file is no recording that can be read.
std::optional<Tracks> tracksOf(const std::string& input) {
    constexpr int sampleRate = 44100; // nothing is listened to
    constexpr int channels = 2;
    const auto reader = MOSK::Reader::create(
        input, MOSK::AudioFormat::create16BitSignedInterleaved(sampleRate, channels), nullptr);
    return reader ? std::optional(reader->tracks()) : std::nullopt;
}

Failure whyNoRecording(const std::string& input) {
    Failure failure = whyNoVideo(input, trackByPathAlone);
    if (failure.reason == "nothing-wrong" || failure.reason == "no-video" ||
        failure.reason == "unknown-format")
        return {"unknown-format", fmt::format("\"{}\" is no recording that can be read.", input),
                /*withoutPicture=*/true};
    return failure;
}

/// The library shows all there is for a track that it doesn't know; here that is a mistake.
std::optional<Failure> refusalOfTrack(const ThumbnailRequest& request) {
    if (request.track == trackByPathAlone)
        return std::nullopt;
    const auto tracks = tracksOf(request.input);
    if (!tracks)
        return whyNoRecording(request.input);
    const auto index = static_cast<std::size_t>(request.track);
    if (index >= tracks->size())
        return noVideo(fmt::format("\"{}\" has {} tracks, which count from 0, and no track {}.",
                                   request.input, tracks->size(), index));
    if (!isShown(*tracks->at(index)))
        return noVideo(
            fmt::format("Track {} of \"{}\" is neither the screen nor the camera.", index, request.input));
    return std::nullopt;
}

Failure whyNothingShown(const ThumbnailRequest& request) {
    const auto tracks = tracksOf(request.input);
    if (!tracks)
        return whyNoRecording(request.input);
    if (std::none_of(tracks->begin(), tracks->end(), [](const auto& track) { return isShown(*track); }))
        return noVideo(
            fmt::format("\"{}\" has neither a track of the screen nor one of the camera.", request.input));
    return {"damaged", fmt::format("\"{}\" has no frame that can be decoded then.", request.input),
            /*withoutPicture=*/true};
}

/// As is a frame that could not be decoded.
bool isAllTransparent(Gdiplus::Bitmap& bitmap) {
    Gdiplus::BitmapData locked;
    if (bitmap.LockBits(nullptr, Gdiplus::ImageLockModeRead, PixelFormat32bppPARGB, &locked) != Gdiplus::Ok)
        return false;
    const auto* rows = static_cast<const std::uint8_t*>(locked.Scan0);
    const auto rowLength = static_cast<std::ptrdiff_t>(locked.Width) * 4;
    bool isEmpty = true;
    for (std::ptrdiff_t y = 0; y < static_cast<std::ptrdiff_t>(locked.Height) && isEmpty; ++y) {
        const std::uint8_t* row = rows + y * locked.Stride;
        isEmpty = std::all_of(row, row + rowLength, [](std::uint8_t byte) { return byte == 0; });
    }
    bitmap.UnlockBits(&locked);
    return isEmpty;
}

} // namespace

bool isRecordingFile(const std::string& input) {
    constexpr std::string_view recordingEnding = ".mosk";
    return lowerCase(input).ends_with(recordingEnding);
}

RecordingPicture pictureOfRecording(const ThumbnailRequest& request) {
    if (auto refusal = refusalOfTrack(request))
        return {nullptr, *refusal};
    const boost::rational<unsigned long> anyRate(30); // recordings keep their own
    std::unique_ptr<Gdiplus::Bitmap> bitmap(
        KestoThumbnailer::GdiplusBitmapThumbnailingHelper::GetThumbnailForVideo(
            *wideFromUtf8(request.input), request.seconds, request.bounds.width, request.bounds.height,
            anyRate, request.track));
    if (!bitmap || isAllTransparent(*bitmap))
        return {nullptr, whyNothingShown(request)};
    return {std::move(bitmap), {}};
}

} // namespace KestoHost
