#include "MOSK/Recording.h"

#include "engine/EngineModule.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace MOSK {

namespace {

using namespace EngineBackend;

/// A cover stands in the file's metadata, though the engine tells it like a stream.
bool isTrack(const StreamFacts& stream) {
    return stream.codecTag != 0 || !stream.video.isAttachedPicture;
}

} // namespace

Recording::Recording(std::string name, std::unique_ptr<IMediaFile> file)
    : path(std::move(name))
    , opened(std::move(file)) {
    std::ranges::copy_if(opened->streams(), std::back_inserter(facts), isTrack);
}

Result<std::shared_ptr<Recording>> Recording::open(const std::string& path) {
    auto file = openMediaFile(path);
    if (!file)
        return tl::unexpected(file.error());
    if (!(*file)->format().starts_with("mov,"))
        return failure(ErrorKind::NotMedia, fmt::format("{}: a file of the MP4 family is expected, found {}",
                                                        path, (*file)->format()));
    return std::shared_ptr<Recording>(new Recording(path, std::move(*file)));
}

Result<std::unique_ptr<IVideoReader>> Recording::readVideo(int stream) {
    Result<std::unique_ptr<IMediaFile>> file = opened ? std::move(opened) : openMediaFile(path);
    if (!file)
        return tl::unexpected(file.error());
    return (*file)->readVideo(stream, VideoOptions{});
}

} // namespace MOSK
