#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "production/PathExtension.h"
#include "scheduling/imagefile/TextConversion.h"

#include <algorithm>
#include <array>

namespace KestoThumbnailer {

namespace {

struct VideoRequest {
    const std::wstring& path;
    std::wstring extension; // in lower case
    double time;
    int width;
    int height;
    const boost::rational<unsigned long>& frameRate;
    int trackIndex;
};

std::wstring LowerExtensionOf(const std::wstring& path) {
    std::wstring extension;
    ExtensionOf(path.c_str(), &extension);
    return LowerAscii(extension);
}

bool IsWholePlumex(const VideoRequest& request) {
    return request.extension == L"plumex";
}

bool IsGif(const VideoRequest& request) {
    return request.extension == L"gif";
}

bool IsMosk(const VideoRequest& request) {
    return request.extension == L"mosk";
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

// FIXME: .mosk recordings are not shown.
Gdiplus::Bitmap* ShowMosk(const VideoRequest&) {
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

constexpr std::array<VideoRoute, 4> routesInOrder = {{
    {IsWholePlumex, ShowNothing},
    {IsGif, ShowAnimatedGif},
    {IsMosk, ShowMosk},
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
