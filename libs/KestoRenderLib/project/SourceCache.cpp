#include "KestoRenderLib/project/SourceCache.h"

#include <limits>

namespace KestoRenderLib {

namespace {

/// The source that `cache` has for `key`, or one that `make` opens where there is none or its file is another
/// by now. One whose file is gone stays: its successor may be about to take its place.
template <class Cache, class Key, class Make>
auto& sourceOf(Cache& cache, const Key& key, std::size_t capacity, const std::string& path,
               const Make& make) {
    const FileStamp stamp = stampOf(path);
    auto& kept = cache.get(key, capacity, [&] { return typename Cache::ValueType{stamp, make()}; });
    if (kept.stamp != stamp && stamp != FileStamp())
        kept = {stamp, make()};
    return *kept.source;
}

} // namespace

ImageSource& SourceCache::image(const std::string& path) {
    images.trim(mostImageBytes, [](const Stamped<ImageSource>& kept) { return kept.source->bytes(); });
    constexpr auto anyNumber = std::numeric_limits<std::size_t>::max();
    return sourceOf(images, path, anyNumber, path, [&] { return std::make_unique<ImageSource>(path); });
}

PageSource& SourceCache::page(const std::string& path, int page) {
    return sourceOf(pages, std::pair(path, page), mostPages, path,
                    [&] { return std::make_unique<PageSource>(path, page); });
}

GifSource& SourceCache::gif(const KestoMediaLib::Media& user, const std::string& path) {
    return sourceOf(gifs, std::pair(&user, path), mostDecoders, path,
                    [&] { return std::make_unique<GifSource>(path); });
}

VideoSource& SourceCache::video(const KestoMediaLib::Media& user, const std::string& path, int streamIndex) {
    return sourceOf(videos, VideoKey(&user, path, streamIndex), mostDecoders, path,
                    [&] { return std::make_unique<VideoSource>(path, streamIndex); });
}

} // namespace KestoRenderLib
