#include "gdiplus/encoders/BmpEncoder.h"

#include "gdiplus/encoders/PictureRows.h"
#include "gdiplus/encoders/SinkWriter.h"

#include <array>
#include <cstdint>
#include <limits>

namespace GdiplusBackend {

namespace {

constexpr std::uint32_t fileHeaderBytes = 14;
constexpr std::uint32_t infoHeaderBytes = 40;
constexpr std::uint32_t colourBytes = 4;

/// Little-endian fields in a row.
class FieldWriter {
public:
    explicit FieldWriter(SinkWriter& target)
        : out(&target) {}

    void put16(std::uint32_t value) { put<2>(value); }
    void put32(std::uint32_t value) { put<4>(value); }

private:
    template <std::size_t Size>
    void put(std::uint32_t value) {
        std::array<std::byte, Size> bytes;
        for (std::size_t i = 0; i < Size; ++i)
            bytes[i] = static_cast<std::byte>(value >> 8 * i);
        out->write(bytes);
    }

    SinkWriter* out;
};

struct FileLayout {
    std::uint32_t colours = 0;
    std::uint64_t pixelOffset = 0;
    std::uint64_t pixelBytes = 0;

    std::uint64_t fileBytes() const { return pixelOffset + pixelBytes; }
};

FileLayout layOut(const ConstPixelView& picture, std::size_t colours) {
    const std::uint64_t rows = static_cast<std::uint64_t>(picture.height);
    return {.colours = static_cast<std::uint32_t>(colours),
            .pixelOffset = fileHeaderBytes + infoHeaderBytes + colourBytes * std::uint64_t{colours},
            .pixelBytes = alignedStride(picture.width, picture.format) * rows};
}

void putFileHeader(FieldWriter& out, const FileLayout& layout) {
    out.put16(0x4D42); // "BM"
    out.put32(static_cast<std::uint32_t>(layout.fileBytes()));
    out.put32(0);
    out.put32(static_cast<std::uint32_t>(layout.pixelOffset));
}

void putInfoHeader(FieldWriter& out, const FileLayout& layout, const ConstPixelView& picture,
                   const EncodeOptions& options) {
    out.put32(infoHeaderBytes);
    out.put32(static_cast<std::uint32_t>(picture.width));
    out.put32(static_cast<std::uint32_t>(picture.height));
    out.put16(1);
    out.put16(GetPixelFormatSize(picture.format));
    out.put32(0); // BI_RGB
    out.put32(static_cast<std::uint32_t>(layout.pixelBytes));
    out.put32(dotsPerMetre(options.dpiX));
    out.put32(dotsPerMetre(options.dpiY));
    out.put32(layout.colours);
    out.put32(0);
}

} // namespace

Result<void> encodeBmp(const ConstPixelView& picture, const EncodeOptions& options, ByteSink& sink) {
    if (auto fit = checkPicture(picture, "BMP", std::numeric_limits<std::int32_t>::max()); !fit)
        return fit;
    const PictureRows rows(picture);
    const FileLayout layout = layOut(picture, rows.palette().size());
    if (layout.fileBytes() > std::numeric_limits<std::uint32_t>::max())
        return damaged("the picture is larger than the 4 GiB of a BMP file");

    SinkWriter writer(sink);
    FieldWriter fields(writer);
    putFileHeader(fields, layout);
    putInfoHeader(fields, layout, picture, options);
    for (const Gdiplus::ARGB colour : rows.palette())
        fields.put32(colour & 0x00FFFFFF);

    constexpr std::array<std::byte, 3> zeros{};
    const std::size_t padding = alignedStride(picture.width, picture.format) - rows.raw(0).size();
    for (int y = picture.height - 1; y >= 0; --y)
        if (!writer.write(rows.raw(y)) || !writer.write(std::span(zeros).first(padding)))
            break;
    return writer.finish();
}

} // namespace GdiplusBackend
