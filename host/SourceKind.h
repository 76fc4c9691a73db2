#pragma once

#include <KestoThumbnailer/ThumbnailLoaderJob.h>

#include <string>

namespace KestoHost {

/// What an input is, as far as its name tells.
struct SourceKind {
    const char* word; ///< for reports: "image" or "pdf"
    KestoThumbnailer::ThumbnailSourceKind job;
};

/// As in the library the extension alone decides.
SourceKind sourceKindOf(const std::string& path);

} // namespace KestoHost
