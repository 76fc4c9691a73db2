#include "gdiplus/image/BitmapObject.h"

#include "gdiplus/image/DefaultPalette.h"
#include "gdiplus/image/PictureRows.h"
#include "gdiplus/pixels/ConvertPixels.h"
#include "gdiplus/pixels/RotateFlip.h"

#include <algorithm>
#include <utility>

namespace GdiplusBackend {

using Gdiplus::RotateFlipType;

namespace {

UINT alphaFlag(Gdiplus::PixelFormat format) {
    return IsAlphaPixelFormat(format) || IsIndexedPixelFormat(format) ? Gdiplus::ImageFlagsHasAlpha : 0U;
}

BitmapObject::Traits traitsOf(Gdiplus::PixelFormat format) {
    BitmapObject::Traits traits;
    traits.format = format;
    traits.flags = alphaFlag(format);
    return traits;
}

} // namespace

BitmapObject::BitmapObject(int width, int height, const Traits& traits)
    : shownWidth(width)
    , shownHeight(height)
    , facts(traits) {}

BitmapObject::BitmapObject(std::shared_ptr<const EncodedPicture> picture, Gdiplus::PixelFormat format,
                           RotateFlipType turn)
    : shownWidth(picture->facts().width)
    , shownHeight(picture->facts().height)
    , encoded(std::move(picture))
    , pendingTurn(turn) {
    const PictureFacts& source = encoded->facts();
    facts = {format, source.rawFormat, source.flags, source.dpiX, source.dpiY};
    if (IsIndexedPixelFormat(format))
        colors = encoded->palette();
    if (swapsSides(turn))
        std::swap(shownWidth, shownHeight);
}

Result<std::unique_ptr<BitmapObject>> BitmapObject::create(int width, int height,
                                                           Gdiplus::PixelFormat format) {
    auto buffer = PixelBuffer::create(width, height, format);
    if (!buffer)
        return tl::unexpected(std::move(buffer).error());
    std::unique_ptr<BitmapObject> bitmap(new BitmapObject(width, height, traitsOf(format)));
    bitmap->colors = defaultPalette(format);
    bitmap->adopt(std::move(*buffer));
    return bitmap;
}

std::unique_ptr<BitmapObject> BitmapObject::overMemory(const PixelView& memory) {
    std::unique_ptr<BitmapObject> bitmap(
        new BitmapObject(memory.width, memory.height, traitsOf(memory.format)));
    bitmap->colors = memory.palette.empty()
                         ? defaultPalette(memory.format)
                         : std::vector<Gdiplus::ARGB>(memory.palette.begin(), memory.palette.end());
    bitmap->view = memory;
    bitmap->view.palette = bitmap->colors;
    return bitmap;
}

Result<std::unique_ptr<BitmapObject>> BitmapObject::open(const wchar_t* filename,
                                                         ColorManagement management) {
    auto picture = EncodedPicture::open(filename, management);
    if (!picture)
        return tl::unexpected(std::move(picture).error());
    return over(std::move(*picture));
}

std::unique_ptr<BitmapObject> BitmapObject::over(std::shared_ptr<const EncodedPicture> picture) {
    const Gdiplus::PixelFormat format = picture->pixelFormat();
    return std::unique_ptr<BitmapObject>(
        new BitmapObject(std::move(picture), format, Gdiplus::RotateNoneFlipNone));
}

void BitmapObject::adopt(PixelBuffer buffer) {
    own = std::move(buffer);
    view = own.view();
    view.palette = colors;
    shownWidth = view.width;
    shownHeight = view.height;
    encoded.reset();
}

Result<void> BitmapObject::setPalette(std::span<const Gdiplus::ARGB> entries) {
    if (auto decoded = pixels(); !decoded)
        return tl::unexpected(std::move(decoded).error());
    const std::size_t most = std::size_t{1} << GetPixelFormatSize(facts.format);
    colors.assign(entries.begin(),
                  entries.begin() + static_cast<std::ptrdiff_t>(std::min(most, entries.size())));
    view.palette = colors;
    return {};
}

LoadError BitmapObject::remember(LoadError error) {
    loadError = error;
    return error;
}

Result<void> BitmapObject::decode() {
    auto picture = encoded->decode(facts.format);
    if (picture && pendingTurn != Gdiplus::RotateNoneFlipNone)
        picture = rotateFlip(picture->view(), pendingTurn);
    if (!picture)
        return tl::unexpected(remember(std::move(picture).error()));
    properties(); // they stand in the file that is now given back
    adopt(std::move(*picture));
    return {};
}

Result<PixelView> BitmapObject::pixels() {
    if (loadError)
        return tl::unexpected(*loadError);
    if (encoded)
        if (auto decoded = decode(); !decoded)
            return tl::unexpected(std::move(decoded).error());
    return view;
}

Result<void> BitmapObject::validate() {
    if (drawnFromEncoded && !loadError)
        return {};
    return pixels().map([](const PixelView&) {});
}

Result<void> BitmapObject::turn(RotateFlipType type) {
    if (encoded) {
        pendingTurn = combine(pendingTurn, type);
        if (swapsSides(type))
            std::swap(shownWidth, shownHeight);
        return {};
    }
    auto turned = rotateFlip(view, type);
    if (!turned)
        return tl::unexpected(std::move(turned).error());
    adopt(std::move(*turned));
    return {};
}

Result<std::unique_ptr<BitmapObject>> BitmapObject::clone(const Gdiplus::Rect& area,
                                                          Gdiplus::PixelFormat format) {
    const bool whole = area.X == 0 && area.Y == 0 && area.Width == shownWidth && area.Height == shownHeight;
    // From a format that loses something, or rounds it, the next one is made of what is left.
    const bool losesNothing =
        encoded && (format == facts.format || (showsAllOfEncoded() && facts.format != PixelFormat32bppPARGB));
    if (whole && losesNothing && !loadError)
        return std::unique_ptr<BitmapObject>(new BitmapObject(encoded, format, pendingTurn));
    const auto source = pixels();
    if (!source)
        return tl::unexpected(source.error());
    auto copy = PixelBuffer::create(area.Width, area.Height, format);
    if (!copy)
        return tl::unexpected(std::move(copy).error());
    convertPixels(*source, area.X, area.Y, copy->view());
    Traits traits = facts;
    traits.format = format;
    std::unique_ptr<BitmapObject> made(new BitmapObject(area.Width, area.Height, traits));
    if (IsIndexedPixelFormat(format))
        made->colors = colors;
    made->propertyCache = properties();
    made->adopt(std::move(*copy));
    return made;
}

/// Whether neither colours nor alpha go lost between the file and this bitmap's format.
bool BitmapObject::showsAllOfEncoded() const {
    switch (facts.format) {
    case PixelFormat32bppARGB:
    case PixelFormat32bppPARGB:
        return true;
    case PixelFormat24bppRGB:
    case PixelFormat32bppRGB:
        return encoded->isOpaque();
    default:
        return facts.format == encoded->pixelFormat();
    }
}

Result<std::optional<PixelBuffer>> BitmapObject::drawEncoded(int targetWidth, int targetHeight,
                                                             Kernel kernel) {
    if (loadError)
        return tl::unexpected(*loadError);
    // Who draws from a picture twice will do it again: decode it whole then.
    if (!encoded || drawnFromEncoded || !showsAllOfEncoded())
        return std::optional<PixelBuffer>();
    const PictureFacts& source = encoded->facts();
    auto drawn = encoded->draw(planDrawing({source.width, source.height, source.reductions, pendingTurn,
                                            targetWidth, targetHeight, kernel}),
                               kernel);
    if (!drawn)
        return tl::unexpected(remember(std::move(drawn).error()));
    drawnFromEncoded = true;
    return std::optional<PixelBuffer>(std::move(*drawn));
}

const std::vector<PropertyEntry>& BitmapObject::properties() {
    if (!propertyCache)
        propertyCache = encoded ? propertiesFromExif(encoded->facts().exif) : std::vector<PropertyEntry>();
    return *propertyCache;
}

} // namespace GdiplusBackend
