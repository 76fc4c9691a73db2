#pragma once

#include "KestoRenderLib/project/PictureSource.h"

#include "platform/Gdiplus.h"

#include <cstddef>
#include <memory>
#include <string>

namespace KestoRenderLib {

/// The picture in an image file, turned upright by its orientation tag. What was made last is kept.
class ImageSource : public IPictureSource {
public:
    /// Reads the file's header. `path` is UTF-8. A file that is missing or is no image has no size.
    explicit ImageSource(const std::string& path);

    KestoRenderLib::Size size() const override { return upright; }
    boost::shared_ptr<MetaBitmap> picture(const KestoRenderLib::Size& wanted) override;

    bool isGif() const;

    /// How much memory it holds, about.
    std::size_t bytes() const;

private:
    bool draw(MetaBitmap& target);

    std::unique_ptr<Gdiplus::Bitmap> file; ///< null once it turned out to be damaged
    KestoRenderLib::Size upright;
    boost::shared_ptr<MetaBitmap> made;
    int draws = 0; ///< from the second one on, `file` keeps its pixels
};

} // namespace KestoRenderLib
