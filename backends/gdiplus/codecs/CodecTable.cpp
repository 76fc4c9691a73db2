#include "gdiplus/codecs/CodecTable.h"

#include "gdiplus/codecs/BmpDecoder.h"
#include "gdiplus/codecs/GifDecoder.h"
#include "gdiplus/codecs/JpegDecoder.h"
#include "gdiplus/codecs/OptionalCodecs.h"
#include "gdiplus/codecs/PngDecoder.h"
#include "gdiplus/codecs/TiffDecoder.h"
#include "gdiplus/codecs/WebpDecoder.h"
#include "platform/ImageCodecs.h"

#include <array>

namespace GdiplusBackend {

namespace {

// Longer signatures before shorter ones.
constexpr CodecEntry codecsInProbeOrder[] = {
    {"PNG", PngDecoder::recognises, PngDecoder::open},
    {"GIF", GifDecoder::recognises, GifDecoder::open},
    {"TIFF", TiffDecoder::recognises, TiffDecoder::open},
    {"WebP", WebpDecoder::recognises, WebpDecoder::open},
    {"HEIF", HeifCodec::recognises, HeifCodec::open, HeifCodec::isPresent},
    {"JPEG", JpegDecoder::recognises, JpegDecoder::open},
    {"BMP", BmpDecoder::recognises, BmpDecoder::open},
    {"SVG", SvgCodec::recognises, SvgCodec::open, SvgCodec::isPresent},
};

} // namespace

Result<std::unique_ptr<PictureDecoder>> openPicture(std::shared_ptr<const ByteSource> source) {
    std::array<std::byte, headBytes> bytes;
    const std::span<const std::byte> head(bytes.data(), source->read(0, bytes));
    for (const CodecEntry& codec : codecsInProbeOrder)
        if (codec.recognises(head))
            return codec.open(std::move(source));
    return tl::unexpected(LoadError{Gdiplus::UnknownImageFormat, "no decoder knows this kind of file"});
}

std::vector<std::string> availableCodecs() {
    std::vector<std::string> names;
    for (const CodecEntry& codec : codecsInProbeOrder)
        if (!codec.isPresent || codec.isPresent())
            names.emplace_back(codec.name);
    return names;
}

} // namespace GdiplusBackend

namespace Gdiplus {

std::vector<std::string> AvailableImageDecoders() {
    return GdiplusBackend::availableCodecs();
}

} // namespace Gdiplus
