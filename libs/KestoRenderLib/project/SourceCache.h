#pragma once

#include "KestoRenderLib/project/FileStamp.h"
#include "KestoRenderLib/project/GifSource.h"
#include "KestoRenderLib/project/ImageSource.h"
#include "KestoRenderLib/project/PageSource.h"
#include "KestoRenderLib/project/RecentlyUsed.h"
#include "KestoRenderLib/project/VideoSource.h"

#include "platform/KestoMedia.h"

#include <memory>
#include <string>
#include <tuple>
#include <utility>

namespace KestoRenderLib {

/// Opened files of one project's media: images and pages are shared by path, decoders belong to one media
/// each, since media of one file show different times of it. What can't be opened is remembered as well. A
/// file that has changed since is opened anew.
class SourceCache {
public:
    static constexpr std::size_t mostDecoders = 8;
    static constexpr std::size_t mostPages = 4;
    static constexpr std::size_t mostImageBytes = std::size_t{256} << 20;

    /// Each result holds until the next call for its kind.
    ImageSource& image(const std::string& path);
    PageSource& page(const std::string& path, int page);
    GifSource& gif(const KestoMediaLib::Media& user, const std::string& path);
    VideoSource& video(const KestoMediaLib::Media& user, const std::string& path, int streamIndex);

private:
    template <class Source>
    struct Stamped {
        FileStamp stamp; ///< from before it was opened
        std::unique_ptr<Source> source;
    };
    using VideoKey = std::tuple<const KestoMediaLib::Media*, std::string, int>;

    RecentlyUsed<std::string, Stamped<ImageSource>> images;
    RecentlyUsed<std::pair<std::string, int>, Stamped<PageSource>> pages;
    RecentlyUsed<std::pair<const KestoMediaLib::Media*, std::string>, Stamped<GifSource>> gifs;
    RecentlyUsed<VideoKey, Stamped<VideoSource>> videos;
};

} // namespace KestoRenderLib
