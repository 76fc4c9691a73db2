#include "gdiplus/encoders/EncoderTable.h"
#include "gdiplus/flat/FlatGuard.h"
#include "gdiplus/pixels/ConvertPixels.h"
#include "system/AtomicFile.h"
#include "system/PathResolver.h"

#include "platform/GdiplusFlat.h"

#include <fmt/format.h>

#include <cstring>

using namespace GdiplusBackend;

namespace {

class FileSink : public ByteSink {
public:
    explicit FileSink(const std::string& path)
        : file(path) {}

    Result<void> write(std::span<const std::byte> bytes) override { return outcome(file.write(bytes)); }
    Result<void> commit() { return outcome(file.commit()); }

private:
    Result<void> outcome(bool done) const {
        if (done)
            return {};
        return tl::unexpected(LoadError{Gdiplus::Win32Error, fmt::format("write error {}", file.error())});
    }

    SystemBackend::AtomicFile file;
};

/// The format in which encoders take a picture: indices and 24 bits as they are, all else with alpha.
PixelFormat encodableFormat(PixelFormat format) {
    if (IsIndexedPixelFormat(format) || format == PixelFormat24bppRGB)
        return format;
    if (format == PixelFormat32bppCMYK || GetPixelFormatSize(format) == 16)
        return PixelFormat24bppRGB;
    return PixelFormat32bppARGB;
}

Result<void> readParameters(const Gdiplus::EncoderParameters* parameters, EncodeOptions& options) {
    for (UINT i = 0; parameters && i < parameters->Count; ++i) {
        const Gdiplus::EncoderParameter& parameter = parameters->Parameter[i];
        if (parameter.Guid != Gdiplus::EncoderQuality ||
            parameter.Type != Gdiplus::EncoderParameterValueTypeLong || parameter.NumberOfValues != 1 ||
            !parameter.Value)
            return tl::unexpected(
                LoadError{Gdiplus::InvalidParameter, "only a quality is known to encoders"});
        LONG quality = 0;
        std::memcpy(&quality, parameter.Value, sizeof quality);
        if (quality < 0 || quality > 100)
            return tl::unexpected(LoadError{Gdiplus::InvalidParameter, "a quality lies between 0 and 100"});
        options.jpegQuality = quality;
    }
    return {};
}

Result<void> save(BitmapObject& bitmap, const EncoderEntry& encoder, const EncodeOptions& options,
                  const std::string& path) {
    const auto pixels = bitmap.pixels();
    if (!pixels)
        return tl::unexpected(pixels.error());
    ConstPixelView picture = *pixels;
    PixelBuffer converted;
    if (const PixelFormat format = encodableFormat(picture.format); format != picture.format) {
        auto made = PixelBuffer::create(picture.width, picture.height, format);
        if (!made)
            return tl::unexpected(std::move(made).error());
        converted = std::move(*made);
        convertPixels(picture, 0, 0, converted.view());
        picture = converted.view();
    }
    FileSink file(path);
    return encoder.encode(picture, options, file).and_then([&] { return file.commit(); });
}

} // namespace

namespace Gdiplus::DllExports {

GpStatus GdipGetImageEncodersSize(UINT* count, UINT* size) {
    if (!count || !size)
        return InvalidParameter;
    return flat([&] { return encodersSize(*count, *size); });
}

GpStatus GdipGetImageEncoders(UINT count, UINT size, ImageCodecInfo* encoders) {
    return flat([&] { return fillEncoders(count, size, encoders); });
}

GpStatus GdipSaveImageToFile(GpImage* image, const WCHAR* filename, const CLSID* encoder,
                             const EncoderParameters* parameters) {
    if (!image || !filename || !encoder)
        return InvalidParameter;
    return flat([&] {
        BitmapObject& bitmap = bitmapOf(image);
        if (bitmap.lock())
            return WrongState;
        const EncoderEntry* entry = findEncoder(*encoder);
        if (!entry)
            return UnknownImageFormat;
        EncodeOptions options = {bitmap.traits().dpiX, bitmap.traits().dpiY, {}};
        if (const auto read = readParameters(parameters, options); !read)
            return read.error().status;
        const std::string path = SystemBackend::resolvePathForWriting(SystemBackend::toUtf8(filename));
        return statusOf(save(bitmap, *entry, options, path));
    });
}

} // namespace Gdiplus::DllExports
