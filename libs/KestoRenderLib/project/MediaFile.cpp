#include "KestoRenderLib/project/MediaFile.h"

#include "KestoRenderLib/project/GifSource.h"
#include "KestoRenderLib/project/ImageSource.h"
#include "KestoRenderLib/project/PageSource.h"
#include "KestoRenderLib/project/PathText.h"
#include "KestoRenderLib/project/RenderBudget.h"
#include "KestoRenderLib/project/VideoSource.h"

#include "KestoMediaLib/FileMedia.h"
#include "platform/System.h"

#include <boost/make_shared.hpp>
#include <fmt/format.h>

#include <optional>
#include <utility>

namespace KestoRenderLib {

namespace {

using namespace KestoMediaLib;

constexpr unsigned long usualFrameRate = 30;
constexpr __int64 stillDuration = 5 * modelTimePerSecond;
/// Of a file that does not tell: longer than what anybody asks for.
constexpr __int64 unknownDuration = 24 * 3600 * modelTimePerSecond;

template <class Clip>
MediaFile filled(const boost::shared_ptr<Clip>& clip, const Size& size, __int64 duration,
                 const boost::rational<unsigned long>& frameRate) {
    clip->setExtent({size.width * 1.0, size.height * 1.0});
    clip->setSpan({.start = 0, .duration = duration});
    return {clip, size, frameRate};
}

bool isPositive(const boost::rational<__int64>& value) {
    return value.numerator() > 0; // C++20 cannot compare a boost::rational with a number
}

template <class Clip, class Source>
MediaFile moving(const std::string& path, Source& video) {
    const auto rate = video.frameRate();
    const auto duration = video.duration();
    return filled(boost::make_shared<Clip>(SourceFile{path}), video.size(),
                  isPositive(duration) ? RationalUtil::toKestoTime(SafeRational(duration)) : unknownDuration,
                  isPositive(rate)
                      ? boost::rational<unsigned long>(static_cast<unsigned long>(rate.numerator()),
                                                       static_cast<unsigned long>(rate.denominator()))
                      : usualFrameRate);
}

/// A GIF of one frame is a still picture like any other.
std::optional<MediaFile> asPicture(const std::string& path) {
    const ImageSource image(path);
    if (image.size() == Size())
        return std::nullopt;
    if (image.isGif()) {
        GifSource gif(path);
        if (gif.frameCount() > 1)
            return moving<AnimatedGifClip>(path, gif);
    }
    return filled(boost::make_shared<ImageClip>(SourceFile{path}), image.size(), stillDuration,
                  usualFrameRate);
}

std::optional<MediaFile> asPage(const std::string& path) {
    const PageSource page(path, 1);
    if (page.size() == Size())
        return std::nullopt;
    return filled(boost::make_shared<DocumentMedia>(path, 1), page.size(), stillDuration, usualFrameRate);
}

std::optional<MediaFile> asVideo(const std::string& path) {
    const VideoSource video(path, -1);
    if (video.size() == Size())
        return std::nullopt;
    return moving<VideoClip>(path, video);
}

std::optional<MediaFile> asAnything(const std::string& path) {
    if (hasExtension(path, "pdf"))
        return asPage(path);
    auto picture = asPicture(path);
    return picture ? picture : asVideo(path);
}

} // namespace

tl::expected<MediaFile, std::string> openMediaFile(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(widePath(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return tl::unexpected(fmt::format("{}: no such file", path));
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return tl::unexpected(fmt::format("{}: expected a media file, found a folder", path));
    auto file = asAnything(path);
    if (!file)
        return tl::unexpected(
            fmt::format("{}: expected a video, picture or document that can be read", path));
    if (!isWithinBudget(file->size))
        return tl::unexpected(fmt::format("{}: {} x {} pixels are more than the budget (KESTO_PIXEL_BUDGET)",
                                          path, file->size.width, file->size.height));
    return *std::move(file);
}

} // namespace KestoRenderLib
