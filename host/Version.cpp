#include "Version.h"

#include <KestoThumbnailer/LibraryVersion.h>
#include <KestoThumbnailer/platform/ImageCodecs.h>

#include <fmt/format.h>

namespace KestoHost {

std::string versionText() {
    return fmt::format("kesto-thumbnail {}\nlibrary: {}\nimage decoders: {}\ndocuments: PDF",
                       KESTO_PROGRAM_VERSION, KestoThumbnailer::LibraryVersion(),
                       fmt::join(Gdiplus::AvailableImageDecoders(), ", "));
}

} // namespace KestoHost
