#include "inspection/source/MediaPath.h"
#include "inspection/source/PngTrackMovie.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "production/PathExtension.h"
#include "production/PngTrackThumbnail.h"

#include <algorithm>
#include <array>

namespace KestoThumbnailer {

namespace {

constexpr std::int32_t screenStream = 4; // kinds of members of a .plumex
constexpr std::int32_t cameraStream = 5;

struct VideoRequest {
    const std::wstring& path;
    std::wstring extension; // in lower case
    double time;
    int width;
    int height;
    const boost::rational<unsigned long>& frameRate;
    int trackIndex;
};

bool IsWholePlumex(const VideoRequest& request) {
    return request.extension == L"plumex";
}

bool IsGif(const VideoRequest& request) {
    return request.extension == L"gif";
}

bool IsMosk(const VideoRequest& request) {
    return IsMoskMemberPath(request.path) || request.extension == L"mosk";
}

bool IsPngMovie(const VideoRequest& request) {
    return IsPngTrackMovie(request.path) != 0;
}

bool IsRecordingStream(const VideoRequest& request) {
    const std::int32_t kind = ParseMediaPath(request.path, anyTrack).kind;
    return kind == screenStream || kind == cameraStream;
}

bool IsAnything(const VideoRequest&) {
    return true;
}

/// A whole container is no video: its streams are asked for one by one.
Gdiplus::Bitmap* ShowNothing(const VideoRequest&) {
    return nullptr;
}

Gdiplus::Bitmap* ShowAnimatedGif(const VideoRequest& request) {
    return GdiplusBitmapThumbnailingHelper::GetThumbnailForAnimatedGIF(request.path, request.time,
                                                                       request.width, request.height);
}

Gdiplus::Bitmap* ShowMosk(const VideoRequest& request) {
    return GdiplusBitmapThumbnailingHelper::GetThumbnailForMosk(request.path, request.time, request.width,
                                                                request.height, request.trackIndex);
}

Gdiplus::Bitmap* ShowPngTrack(const VideoRequest& request) {
    return GetThumbnailForPngTrack(request.path, request.time, request.width, request.height);
}

/// Streams inside a `.plumex` are not decoded yet.
Gdiplus::Bitmap* ShowRecordingStream(const VideoRequest&) {
    return nullptr;
}

Gdiplus::Bitmap* ShowFile(const VideoRequest& request) {
    return GdiplusBitmapThumbnailingHelper::GetThumbnailForFile(request.path, request.time, request.width,
                                                                request.height, request.frameRate);
}

struct VideoRoute {
    bool (*applies)(const VideoRequest&);
    Gdiplus::Bitmap* (*show)(const VideoRequest&);
};

constexpr std::array<VideoRoute, 6> routesInOrder = {{
    {IsWholePlumex, ShowNothing},
    {IsGif, ShowAnimatedGif},
    {IsMosk, ShowMosk},
    {IsPngMovie, ShowPngTrack},
    {IsRecordingStream, ShowRecordingStream},
    {IsAnything, ShowFile}, // the dearest, as it builds a renderer
}};

} // namespace

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GetThumbnailForVideo(
    const std::wstring& path, double time, int width, int height,
    const boost::rational<unsigned long>& frameRate, int trackIndex) {
    const VideoRequest request{path, LowerExtensionOf(path), time, width, height, frameRate, trackIndex};
    const auto route = std::find_if(routesInOrder.begin(), routesInOrder.end(),
                                    [&request](const VideoRoute& r) { return r.applies(request); });
    return route->show(request); // the last one applies to all; a route that fails hands on to none
}

} // namespace KestoThumbnailer
