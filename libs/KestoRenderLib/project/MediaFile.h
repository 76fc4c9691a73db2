#pragma once

#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderLib.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>
#include <tl/expected.hpp>

#include <string>

namespace KestoRenderLib {

/// A file as a media that shows all of it, on no track: a video at its display size for as long as it lasts,
/// a picture or page for five seconds.
struct MediaFile {
    boost::shared_ptr<KestoMediaLib::Media> media;
    Size size;
    boost::rational<unsigned long> frameRate; ///< its own; that of a picture is 30
};

/// Opens the file, whose `path` is UTF-8. The error is a sentence for people that begins with the path. The
/// process must have started GDI+.
tl::expected<MediaFile, std::string> openMediaFile(const std::string& path);

} // namespace KestoRenderLib
