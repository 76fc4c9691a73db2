#include "gdiplus/codecs/JpegDecoder.h"

#include "gdiplus/codecs/CodecTable.h"
#include "gdiplus/codecs/PixelBudget.h"
#include "gdiplus/codecs/jpegdecoder/JpegEighth.h"
#include "gdiplus/codecs/jpegdecoder/JpegReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

namespace GdiplusBackend {

namespace {

constexpr std::array<int, 3> reductionsOfTransform = {2, 4, 8};

struct Freed {
    void operator()(JOCTET* memory) const { std::free(memory); }
};

/// The first APP1 segment that holds Exif, without the identifier and the byte that fills it up.
std::vector<std::byte> exifOf(const jpeg_decompress_struct& info) {
    constexpr std::string_view identifier("Exif\0", 5);
    constexpr std::size_t prefix = 6;
    for (const jpeg_marker_struct* marker = info.marker_list; marker; marker = marker->next) {
        const auto bytes = std::as_bytes(std::span(marker->data, marker->data_length));
        if (marker->marker == JPEG_APP0 + 1 && bytes.size() > prefix && startsWith(bytes, identifier))
            return {bytes.begin() + prefix, bytes.end()};
    }
    return {};
}

Result<std::vector<std::byte>> iccProfileOf(JpegReader& reader) {
    JOCTET* memory = nullptr;
    unsigned int length = 0;
    const Result<void> done = reader.run(
        [&] { (void)jpeg_read_icc_profile(&reader.info, &memory, &length); }); // absent: no memory, no length
    const std::unique_ptr<JOCTET, Freed> profile(memory);
    if (!done)
        return tl::unexpected(done.error());
    const auto bytes = std::as_bytes(std::span(memory, memory ? length : 0));
    return std::vector<std::byte>(bytes.begin(), bytes.end());
}

void setResolution(PictureFacts& facts, const jpeg_decompress_struct& info) {
    constexpr int dotsPerInch = 1; // ITU-T T.871, 10.1
    constexpr int dotsPerCentimetre = 2;
    const bool stated = info.saw_JFIF_marker &&
                        (info.density_unit == dotsPerInch || info.density_unit == dotsPerCentimetre) &&
                        info.X_density > 0 && info.Y_density > 0;
    if (!stated)
        return;
    const float dotsPerUnit = info.density_unit == dotsPerCentimetre ? 2.54F : 1.0F;
    facts.dpiX = static_cast<float>(info.X_density) * dotsPerUnit;
    facts.dpiY = static_cast<float>(info.Y_density) * dotsPerUnit;
    facts.flags |= Gdiplus::ImageFlagsHasRealDPI;
}

std::vector<Gdiplus::ARGB> greyPalette() {
    std::vector<Gdiplus::ARGB> palette(256);
    for (Gdiplus::ARGB level = 0; level < palette.size(); ++level)
        palette[level] = 0xFF000000 | level * 0x010101;
    return palette;
}

Result<void> setLayout(PictureFacts& facts, J_COLOR_SPACE space) {
    switch (space) {
    case JCS_GRAYSCALE:
        facts.layout = RowLayout::Index8;
        facts.palette = greyPalette();
        facts.flags |= Gdiplus::ImageFlagsColorSpaceGRAY;
        return {};
    case JCS_RGB:
    case JCS_YCbCr:
        facts.layout = RowLayout::Bgr24;
        facts.flags |= Gdiplus::ImageFlagsColorSpaceRGB;
        return {};
    case JCS_CMYK:
    case JCS_YCCK:
        facts.layout = RowLayout::Cmyk32;
        facts.flags |=
            space == JCS_CMYK ? Gdiplus::ImageFlagsColorSpaceCMYK : Gdiplus::ImageFlagsColorSpaceYCCK;
        return {};
    default:
        return damaged("JPEG: a number of components that has no meaning as colour");
    }
}

/// Whether so few bytes can be the picture at all: a Huffman-coded block of 8 x 8 samples takes a bit at
/// least, and even oddly sampled components add up to a block for each 256 pixels.
bool canHold(const jpeg_decompress_struct& info, std::uint64_t fileBytes) {
    const std::uint64_t pixels = std::uint64_t{info.image_width} * info.image_height;
    return info.arith_code || pixels / 256 / 8 <= fileBytes;
}

J_COLOR_SPACE outputSpace(RowLayout layout) {
    if (layout == RowLayout::Index8)
        return JCS_GRAYSCALE;
    return layout == RowLayout::Cmyk32 ? JCS_CMYK : JCS_EXT_BGR;
}

void invert(std::span<JSAMPLE> samples) {
    for (JSAMPLE& sample : samples)
        sample = static_cast<JSAMPLE>(~sample);
}

/// Several rows at a time, so that libjpeg can write pairs of rows that it makes together without a copy.
class RowBatch {
public:
    explicit RowBatch(const jpeg_decompress_struct& info)
        : rowBytes(static_cast<std::size_t>(info.output_width) *
                   static_cast<std::size_t>(info.output_components))
        , samples(rowBytes * rowCount) {
        for (std::size_t i = 0; i < rowCount; ++i)
            rows[i] = samples.data() + i * rowBytes;
    }

    static constexpr std::size_t rowCount = 8;
    JSAMPARRAY targets() { return rows.data(); }
    std::span<JSAMPLE> row(std::size_t i) { return {rows[i], rowBytes}; }

private:
    std::size_t rowBytes;
    std::vector<JSAMPLE> samples;
    std::array<JSAMPROW, rowCount> rows = {};
};

Result<void> decodeRows(JpegReader& reader, RowSink& sink) {
    RowBatch batch(reader.info);
    // Adobe's files hold the light that is left instead of the ink.
    const bool inverted = reader.info.out_color_space == JCS_CMYK && reader.info.saw_Adobe_marker;
    while (reader.info.output_scanline < reader.info.output_height) {
        JDIMENSION count = 0;
        Result<void> read = reader.run(
            [&] { count = jpeg_read_scanlines(&reader.info, batch.targets(), RowBatch::rowCount); });
        if (!read)
            return read;
        for (JDIMENSION i = 0; i < count; ++i) {
            if (inverted)
                invert(batch.row(i));
            sink.putRow(std::as_bytes(batch.row(i)));
        }
    }
    return reader.run([&] { (void)jpeg_finish_decompress(&reader.info); }); // reads on to the end marker
}

} // namespace

bool JpegDecoder::recognises(std::span<const std::byte> head) {
    return startsWith(head, "\xFF\xD8\xFF");
}

Result<std::unique_ptr<PictureDecoder>> JpegDecoder::open(std::shared_ptr<const ByteSource> source) {
    JpegReader reader(*source);
    if (Result<void> read = reader.readHeader(JpegReader::Markers::Keep); !read)
        return tl::unexpected(read.error());
    const jpeg_decompress_struct& info = reader.info;
    if (Result<void> fits = checkPixelBudget(info.image_width, info.image_height); !fits)
        return tl::unexpected(fits.error());
    if (!canHold(info, source->size()))
        return truncated(fmt::format("JPEG: {} bytes can't hold {} x {} pixels", source->size(),
                                     info.image_width, info.image_height));

    PictureFacts facts;
    facts.width = static_cast<int>(info.image_width);
    facts.height = static_cast<int>(info.image_height);
    facts.rawFormat = Gdiplus::ImageFormatJPEG;
    facts.flags = Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize;
    facts.reductions = reductionsOfTransform;
    if (Result<void> known = setLayout(facts, info.jpeg_color_space); !known)
        return tl::unexpected(known.error());
    setResolution(facts, info);
    facts.exif = exifOf(info);
    Result<std::vector<std::byte>> profile = iccProfileOf(reader);
    if (!profile)
        return tl::unexpected(profile.error());
    facts.iccProfile = std::move(*profile);
    return std::unique_ptr<PictureDecoder>(new JpegDecoder(std::move(facts), std::move(source)));
}

JpegDecoder::JpegDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(std::move(facts))
    , source(std::move(bytes)) {}

Result<void> JpegDecoder::decode(int reduction, RowSink& sink) const {
    JpegReader reader(*source);
    if (Result<void> read = reader.readHeader(JpegReader::Markers::Skip); !read)
        return read;
    const auto width = static_cast<JDIMENSION>(facts().width);
    const auto height = static_cast<JDIMENSION>(facts().height);
    if (reader.info.image_width != width || reader.info.image_height != height)
        return damaged("JPEG: the file changed after it was opened");
    reader.info.out_color_space = outputSpace(facts().layout);
    if (reduction == 8 && decodeEighth(reader, *source, sink) == EighthOutcome::Handled)
        return {};
    reader.info.scale_num = 1;
    reader.info.scale_denom = static_cast<unsigned int>(reduction);
    // What is shrunk needs no smooth chroma.
    reader.info.do_fancy_upsampling = reduction == 1 ? TRUE : FALSE;
    if (Result<void> started = reader.run([&] { (void)jpeg_start_decompress(&reader.info); }); !started)
        return started;
    return decodeRows(reader, sink);
}

} // namespace GdiplusBackend
