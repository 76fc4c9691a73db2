#pragma once

#include "KestoRenderLib/project/PictureSource.h"

#include <cstdint>

namespace KestoRenderLib {

/// A frame that is there already.
class FrameSource : public IPictureSource {
public:
    /// Empty: no picture.
    explicit FrameSource(boost::shared_ptr<MetaBitmap> frame);
    /// One colour, for any size: a picture of one pixel. `argb` is not premultiplied.
    static FrameSource ofColor(std::uint32_t argb);

    KestoRenderLib::Size size() const override;
    boost::shared_ptr<MetaBitmap> picture(const KestoRenderLib::Size& wanted) override;

private:
    boost::shared_ptr<MetaBitmap> whole;
};

} // namespace KestoRenderLib
