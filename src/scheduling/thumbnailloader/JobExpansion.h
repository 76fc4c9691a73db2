#pragma once

#include "scheduling/ThumbnailLoaderJob.h"

#include <cstddef>

namespace KestoThumbnailer {

/// What a job is queued as.
enum class JobMode : int { Project = 0, File = 1, Callout = 2 };

/// True for a job that asks for one sheet rather than for one picture for each time.
bool IsSheetJob(const ThumbnailLoaderJob& job);

/// The job of the picture with that number among those of `job`. Its first time is the picture's; a callout
/// has no time of its own and keeps the first of `job`. From number 1 on, the file is named after the number.
ThumbnailLoaderJob JobOfPicture(const ThumbnailLoaderJob& job, JobMode mode, std::size_t index);

} // namespace KestoThumbnailer
