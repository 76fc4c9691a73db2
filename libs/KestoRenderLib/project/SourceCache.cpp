#include "KestoRenderLib/project/SourceCache.h"

#include <limits>

namespace KestoRenderLib {

ImageSource& SourceCache::image(const std::string& path) {
    images.trim(mostImageBytes, [](const std::unique_ptr<ImageSource>& source) { return source->bytes(); });
    constexpr auto anyNumber = std::numeric_limits<std::size_t>::max();
    return *images.get(path, anyNumber, [&] { return std::make_unique<ImageSource>(path); });
}

PageSource& SourceCache::page(const std::string& path, int page) {
    return *pages.get({path, page}, mostPages, [&] { return std::make_unique<PageSource>(path, page); });
}

GifSource& SourceCache::gif(const KestoMediaLib::Media& user, const std::string& path) {
    return *gifs.get({&user, path}, mostDecoders, [&] { return std::make_unique<GifSource>(path); });
}

VideoSource& SourceCache::video(const KestoMediaLib::Media& user, const std::string& path, int streamIndex) {
    return *videos.get({&user, path, streamIndex}, mostDecoders,
                       [&] { return std::make_unique<VideoSource>(path, streamIndex); });
}

} // namespace KestoRenderLib
