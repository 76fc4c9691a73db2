#include "scheduling/thumbnailloader/JobExpansion.h"

#include "scheduling/imagefile/FileUtil.h"

#include <string>

namespace KestoThumbnailer {

namespace {

// Deliberate: in lower case, and with the point also where there is no extension.
std::string NumberedPath(const std::string& path, std::size_t index) {
    return FileUtil::fullPathWithoutExtension(path) + "_" + std::to_string(index) + "." +
           FileUtil::extension(path);
}

} // namespace

bool IsSheetJob(const ThumbnailLoaderJob& job) {
    return job.useSpriteSheet && job.times.size() >= 2;
}

ThumbnailLoaderJob JobOfPicture(const ThumbnailLoaderJob& job, JobMode mode, std::size_t index) {
    ThumbnailLoaderJob picture = job;
    if (index == 0)
        return picture;
    if (mode != JobMode::Callout)
        picture.times[0] = job.times[index];
    if (!job.outputFilePath.empty())
        picture.outputFilePath = NumberedPath(job.outputFilePath, index);
    return picture;
}

} // namespace KestoThumbnailer
