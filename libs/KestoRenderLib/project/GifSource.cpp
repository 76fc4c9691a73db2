#include "KestoRenderLib/project/GifSource.h"

#include "KestoRenderLib/project/FrameSource.h"
#include "KestoRenderLib/project/PathText.h"

namespace KestoRenderLib {

GifSource::GifSource(const std::string& path)
    : loader(widePath(path)) {}

boost::rational<__int64> GifSource::frameRate() {
    return loader.valid ? boost::rational<__int64>(frameCount()) / duration() : 0;
}

boost::shared_ptr<MetaBitmap> GifSource::picture(const KestoRenderLib::Size& wanted) {
    FrameSource whole(MetaBitmap::CreateReferenceToFrameCodecLibBitmap(
        loader.GetFrameAtTime(boost::rational_cast<double>(shown))));
    return whole.picture(wanted);
}

} // namespace KestoRenderLib
