#include "gdiplus/image/EncodedPicture.h"

#include "gdiplus/codecs/CodecTable.h"
#include "gdiplus/image/PictureRows.h"
#include "gdiplus/pixels/RotateFlip.h"

#include <algorithm>
#include <utility>

namespace GdiplusBackend {

namespace {

bool isGray(Gdiplus::ARGB color) {
    return (color >> 16 & 255) == (color >> 8 & 255) && (color >> 8 & 255) == (color & 255);
}

ColorTransform::Space spaceOf(const PictureFacts& facts) {
    if (facts.layout == RowLayout::Cmyk32)
        return ColorTransform::Space::Cmyk;
    if ((facts.flags & Gdiplus::ImageFlagsColorSpaceGRAY) != 0 &&
        std::all_of(facts.palette.begin(), facts.palette.end(), isGray))
        return ColorTransform::Space::Gray;
    return ColorTransform::Space::Rgb;
}

bool isOpaqueColor(Gdiplus::ARGB color) {
    return color >> 24 == 255;
}

} // namespace

Result<std::shared_ptr<const EncodedPicture>> EncodedPicture::open(const wchar_t* filename,
                                                                   ColorManagement management) {
    auto file = openFile(filename);
    if (!file)
        return tl::unexpected(std::move(file).error());
    return open(std::move(*file), management);
}

Result<std::shared_ptr<const EncodedPicture>> EncodedPicture::open(std::shared_ptr<const ByteSource> bytes,
                                                                   ColorManagement management) {
    auto decoder = openPicture(std::move(bytes));
    if (!decoder)
        return tl::unexpected(std::move(decoder).error());
    return std::make_shared<const EncodedPicture>(std::move(*decoder), management);
}

EncodedPicture::EncodedPicture(std::unique_ptr<PictureDecoder> opened, ColorManagement management)
    : decoder(std::move(opened))
    , managedPalette(decoder->facts().palette) {
    if (management == ColorManagement::Ignored || facts().iccProfile.empty())
        return;
    colors = ColorTransform::create(facts().iccProfile, spaceOf(facts()));
    if (colors)
        colors->applyToPalette(managedPalette);
}

Gdiplus::PixelFormat EncodedPicture::pixelFormat() const {
    return facts().layout == RowLayout::Cmyk32 && colors ? PixelFormat24bppRGB : facts().pixelFormat();
}

bool EncodedPicture::isOpaque() const {
    return facts().layout != RowLayout::Bgra32 &&
           std::all_of(managedPalette.begin(), managedPalette.end(), isOpaqueColor);
}

Result<PixelBuffer> EncodedPicture::decode(Gdiplus::PixelFormat format) const {
    auto picture =
        PixelBuffer::create(facts().width, facts().height, format,
                            IsIndexedPixelFormat(format) ? managedPalette : std::vector<Gdiplus::ARGB>());
    if (!picture)
        return picture;
    FullSizeRows rows(facts().layout, managedPalette, colors.get(), picture->view());
    if (auto decoded = decoder->decode(1, rows); !decoded)
        return tl::unexpected(std::move(decoded).error());
    return picture;
}

Result<PixelBuffer> EncodedPicture::draw(const DrawPlan& plan, Kernel kernel) const {
    const Gdiplus::PixelFormat format = isOpaque() ? PixelFormat32bppRGB : PixelFormat32bppPARGB;
    auto shrunk = PixelBuffer::create(plan.shrunkWidth, plan.shrunkHeight, format);
    if (!shrunk)
        return shrunk;
    ShrunkRows rows({facts().layout, managedPalette, reducedLength(facts().width, plan.reduction),
                     reducedLength(facts().height, plan.reduction), plan.boxX, plan.boxY},
                    colors.get(), shrunk->view());
    if (auto decoded = decoder->decode(plan.reduction, rows); !decoded)
        return tl::unexpected(std::move(decoded).error());

    auto scaled = PixelBuffer::create(plan.scaledWidth, plan.scaledHeight, format);
    if (!scaled)
        return scaled;
    // The last block of a row or column may be a partial one; the picture ends within it.
    const Region whole = {0, 0, static_cast<double>(facts().width) / (plan.reduction * plan.boxX),
                          static_cast<double>(facts().height) / (plan.reduction * plan.boxY)};
    const Opacity opacity = isOpaque() ? Opacity::Opaque : Opacity::Transparent;
    if (auto done = scale({shrunk->view(), whole, kernel, opacity}, scaled->view()); !done)
        return tl::unexpected(std::move(done).error());
    return plan.turn == Gdiplus::RotateNoneFlipNone ? std::move(scaled)
                                                    : rotateFlip(scaled->view(), plan.turn);
}

} // namespace GdiplusBackend
