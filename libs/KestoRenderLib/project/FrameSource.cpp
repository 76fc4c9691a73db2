#include "KestoRenderLib/project/FrameSource.h"

#include <cstring>
#include <utility>

namespace KestoRenderLib {

namespace {

std::uint32_t premultiplied(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    std::uint32_t result = alpha << 24;
    for (int shift = 0; shift < 24; shift += 8)
        result |= ((argb >> shift & 255) * alpha + 127) / 255 << shift;
    return result;
}

} // namespace

FrameSource::FrameSource(boost::shared_ptr<MetaBitmap> frame)
    : whole(std::move(frame)) {}

FrameSource FrameSource::ofColor(std::uint32_t argb) {
    const auto pixel = MetaBitmap::Create({1, 1}, PixelFormat::Premultiplied32);
    const std::uint32_t value = premultiplied(argb);
    if (pixel)
        std::memcpy(pixel->GetPixels(), &value, sizeof value);
    return FrameSource(pixel);
}

KestoRenderLib::Size FrameSource::size() const {
    return whole ? whole->Size() : KestoRenderLib::Size();
}

boost::shared_ptr<MetaBitmap> FrameSource::picture(const KestoRenderLib::Size& wanted) {
    if (!whole || whole->Size() == wanted)
        return whole;
    auto scaled = MetaBitmap::Create(wanted, PixelFormat::Premultiplied32);
    return MetaBitmapHelper::HighQualityScale(whole.get(), scaled.get()) ? scaled
                                                                         : boost::shared_ptr<MetaBitmap>();
}

} // namespace KestoRenderLib
