#include "KestoRenderLib/project/ImageSource.h"

#include "KestoRenderLib/project/PathText.h"

#include "platform/UprightTurn.h"

namespace KestoRenderLib {

ImageSource::ImageSource(const std::string& path)
    : file(Gdiplus::Bitmap::FromFile(widePath(path).c_str(), /*useEmbeddedColorManagement=*/TRUE)) {
    if (file->GetLastStatus() != Gdiplus::Ok) {
        file.reset();
        return;
    }
    (void)file->RotateFlip(
        Gdiplus::UprightTurnOf(*file)); // a picture that can't be turned is shown as it lies
    upright = {static_cast<std::int32_t>(file->GetWidth()), static_cast<std::int32_t>(file->GetHeight())};
}

boost::shared_ptr<MetaBitmap> ImageSource::picture(const KestoRenderLib::Size& wanted) {
    if (made && made->Size() == wanted)
        return made;
    auto drawn =
        file ? MetaBitmap::Create(wanted, PixelFormat::Premultiplied32) : boost::shared_ptr<MetaBitmap>();
    if (!drawn || !draw(*drawn))
        return {};
    made = drawn;
    return drawn;
}

bool ImageSource::draw(MetaBitmap& target) {
    const auto bitmap = target.AsGdiplusBitmap();
    Gdiplus::Graphics graphics(bitmap.get());
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.DrawImage(file.get(), Gdiplus::Rect(0, 0, target.GetWidth(), target.GetHeight()), 0, 0,
                       upright.width, upright.height, Gdiplus::UnitPixel);
    ++draws;
    // Pixels are decoded late, and a damaged file shows only now.
    if (file->ForceValidation() == Gdiplus::Ok && graphics.GetLastStatus() == Gdiplus::Ok)
        return true;
    file.reset();
    return false;
}

bool ImageSource::isGif() const {
    GUID format{};
    return file && file->GetRawFormat(&format) == Gdiplus::Ok && format == Gdiplus::ImageFormatGIF;
}

std::size_t ImageSource::bytes() const {
    constexpr std::size_t bytesPerPixel = 4;
    const auto bytesOf = [](const KestoRenderLib::Size& size) {
        return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * bytesPerPixel;
    };
    return (made ? bytesOf(made->Size()) : 0) + (file && draws > 1 ? bytesOf(upright) : 0);
}

} // namespace KestoRenderLib
