#include "Version.h"

#include <KestoThumbnailer/LibraryVersion.h>
#include <KestoThumbnailer/platform/ImageCodecs.h>
#include <KestoThumbnailer/platform/PageRasterLib.h>

#include <fmt/format.h>

namespace KestoHost {

std::string versionText() {
    return fmt::format("kesto-thumbnail {}\nlibrary: {}\nimage decoders: {}\ndocuments: {}",
                       KESTO_PROGRAM_VERSION, KestoThumbnailer::LibraryVersion(),
                       fmt::join(Gdiplus::AvailableImageDecoders(), ", "),
                       PageRasterLib::IsRasterizerInstalled() ? "PDF" : "none");
}

} // namespace KestoHost
