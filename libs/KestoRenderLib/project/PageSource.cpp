#include "KestoRenderLib/project/PageSource.h"

namespace KestoRenderLib {

PageSource::PageSource(const std::string& path, int page)
    : document(path)
    , number(page) {
    int width = 0;
    int height = 0;
    if (document.DefaultDimensions(number, width, height))
        natural = {width, height};
}

boost::shared_ptr<MetaBitmap> PageSource::picture(const KestoRenderLib::Size& wanted) {
    if (made && made->Size() == wanted)
        return made;
    const auto drawn = MetaBitmap::Create(wanted, PixelFormat::Premultiplied32);
    if (!drawn ||
        !document.Rasterize(wanted.width, wanted.height, number, drawn->GetPixels(), drawn->GetStride()))
        return {};
    made = drawn;
    return made;
}

} // namespace KestoRenderLib
