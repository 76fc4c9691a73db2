#include "MOSK/Recording.h"

#include "MOSK/WholeBoxes.h"

#include "engine/EngineModule.h"
#include "engine/FileSource.h"

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

/// A recording that was broken off may end within the header of a fragment, which hides those before it.
Result<std::unique_ptr<IMediaFile>> openWholePart(const std::string& path) {
    auto source = FileSource::open(path);
    const auto loaded = engine();
    if (!source || !loaded)
        return tl::unexpected(source ? loaded.error() : source.error());
    const std::int64_t end = endOfWholeBoxes(**source);
    if (end == 0 || end == (*source)->size() || !(*source)->seek(0))
        return failure(ErrorKind::NotMedia, fmt::format("{}: a file of the MP4 family is expected", path));
    return (*loaded)->openSource(std::make_unique<CutSource>(std::move(*source), end), path);
}

Result<std::unique_ptr<IMediaFile>> openFile(const std::string& path) {
    auto file = openMediaFile(path);
    return file || file.error().kind != ErrorKind::NotMedia ? std::move(file) : openWholePart(path);
}

} // namespace

Recording::Recording(std::string name, std::unique_ptr<IMediaFile> file)
    : path(std::move(name))
    , opened(std::move(file)) {
    std::ranges::copy_if(opened->streams(), std::back_inserter(facts), isTrack);
}

Result<std::shared_ptr<Recording>> Recording::open(const std::string& path) {
    auto file = openFile(path);
    if (!file)
        return tl::unexpected(file.error());
    if (!(*file)->format().starts_with("mov,"))
        return failure(ErrorKind::NotMedia, fmt::format("{}: a file of the MP4 family is expected, found {}",
                                                        path, (*file)->format()));
    return std::shared_ptr<Recording>(new Recording(path, std::move(*file)));
}

Result<std::unique_ptr<IVideoReader>> Recording::readVideo(int stream) {
    Result<std::unique_ptr<IMediaFile>> file = opened ? std::move(opened) : openFile(path);
    if (!file)
        return tl::unexpected(file.error());
    return (*file)->readVideo(stream, VideoOptions{});
}

} // namespace MOSK
