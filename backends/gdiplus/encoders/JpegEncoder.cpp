#include "gdiplus/encoders/JpegEncoder.h"

#include "gdiplus/encoders/PictureRows.h"
#include "gdiplus/encoders/SinkWriter.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include <jpeglib.h>

#include <jerror.h>

namespace GdiplusBackend {

namespace {

constexpr int defaultQuality = 75;

// Huffman tables of the picture's own cost a second pass over its coefficients. For a thumbnail that is
// hundredths of a millisecond and saves a tenth of the file; for a photo it doubles the time for a twentieth.
constexpr std::int64_t pixelsWithOwnTables = std::int64_t{512} * 512;

struct SinkDestination : jpeg_destination_mgr {
    SinkWriter* writer = nullptr;
    std::array<JOCTET, std::size_t{1} << 14> buffer;
};

struct EscapingErrors : jpeg_error_mgr {
    std::jmp_buf escape;
    char message[JMSG_LENGTH_MAX];
};

void startDestination(j_compress_ptr jpeg) {
    auto* destination = static_cast<SinkDestination*>(jpeg->dest);
    destination->next_output_byte = destination->buffer.data();
    destination->free_in_buffer = destination->buffer.size();
}

void writeOut(j_compress_ptr jpeg, std::size_t count) {
    auto* destination = static_cast<SinkDestination*>(jpeg->dest);
    if (!destination->writer->write(std::as_bytes(std::span(destination->buffer).first(count))))
        ERREXIT(jpeg, JERR_FILE_WRITE);
}

boolean emptyBuffer(j_compress_ptr jpeg) {
    writeOut(jpeg, static_cast<SinkDestination*>(jpeg->dest)->buffer.size());
    startDestination(jpeg);
    return TRUE;
}

void endDestination(j_compress_ptr jpeg) {
    writeOut(jpeg, static_cast<SinkDestination*>(jpeg->dest)->buffer.size() - jpeg->dest->free_in_buffer);
}

[[noreturn]] void escapeWithMessage(j_common_ptr jpeg) {
    auto* errors = static_cast<EscapingErrors*>(jpeg->err);
    errors->format_message(jpeg, errors->message);
    std::longjmp(errors->escape, 1); // NOLINT(cert-err52-cpp): the library's one way out of an error
}

void ignoreMessage(j_common_ptr) {}

/// The order of samples in which the compressor gets a row.
enum class RowOrder { Bgr, Bgrx, Rgb, Gray };

RowOrder orderFor(const ConstPixelView& picture, const PictureRows& rows) {
    if (picture.format == PixelFormat24bppRGB)
        return RowOrder::Bgr;
    if (picture.format == PixelFormat32bppARGB)
        return RowOrder::Bgrx;
    const bool isGray = std::ranges::all_of(rows.palette(), [](Gdiplus::ARGB colour) {
        return redOf(colour) == greenOf(colour) && greenOf(colour) == blueOf(colour);
    });
    return isGray ? RowOrder::Gray : RowOrder::Rgb;
}

/// Rows as the compressor wants them; those that lie ready in memory are not copied.
class SampleRows {
public:
    SampleRows(const ConstPixelView& picture, const PictureRows& pictureRows)
        : rows(&pictureRows)
        , sampleOrder(orderFor(picture, pictureRows)) {
        if (sampleOrder == RowOrder::Gray)
            indices.resize(static_cast<std::size_t>(picture.width));
        if (sampleOrder == RowOrder::Rgb)
            converted.resize(static_cast<std::size_t>(picture.width) * 3);
    }

    RowOrder order() const { return sampleOrder; }

    const std::byte* row(int y) {
        switch (sampleOrder) {
        case RowOrder::Bgr:
        case RowOrder::Bgrx:
            break;
        case RowOrder::Rgb:
            rows->rgb(y, converted);
            return converted.data();
        case RowOrder::Gray:
            rows->indices(y, indices);
            for (std::uint8_t& sample : indices)
                sample = greenOf(rows->palette()[sample]);
            return std::as_bytes(std::span(indices)).data();
        }
        return rows->raw(y).data();
    }

private:
    const PictureRows* rows;
    RowOrder sampleOrder;
    std::vector<std::uint8_t> indices;
    std::vector<std::byte> converted;
};

class JpegCompressor {
public:
    explicit JpegCompressor(SinkWriter& writer) {
        jpeg.err = jpeg_std_error(&errors);
        errors.error_exit = escapeWithMessage;
        errors.output_message = ignoreMessage;
        destination.init_destination = startDestination;
        destination.empty_output_buffer = emptyBuffer;
        destination.term_destination = endDestination;
        destination.writer = &writer;
    }
    ~JpegCompressor() { jpeg_destroy_compress(&jpeg); }
    JpegCompressor(const JpegCompressor&) = delete;
    JpegCompressor& operator=(const JpegCompressor&) = delete;

    /// False when the library gave up. It leaves this function by a jump, so no object with a destructor may
    /// be made in here or in what it calls.
    bool compress(const ConstPixelView& picture, const EncodeOptions& options, SampleRows& rows) {
        if (setjmp(errors.escape) != 0) // NOLINT(cert-err52-cpp)
            return false;
        jpeg_create_compress(&jpeg);
        jpeg.dest = &destination;
        configure(picture, options, rows.order());
        jpeg_start_compress(&jpeg, TRUE);
        while (jpeg.next_scanline < jpeg.image_height) {
            const std::byte* row = rows.row(static_cast<int>(jpeg.next_scanline));
            // The library only reads rows, though its signature does not say so.
            JSAMPROW samples = reinterpret_cast<JSAMPROW>(const_cast<std::byte*>(row));
            jpeg_write_scanlines(&jpeg, &samples, 1);
        }
        jpeg_finish_compress(&jpeg);
        return true;
    }

    const char* message() const { return errors.message; }

private:
    void configure(const ConstPixelView& picture, const EncodeOptions& options, RowOrder order) {
        jpeg.image_width = static_cast<JDIMENSION>(picture.width);
        jpeg.image_height = static_cast<JDIMENSION>(picture.height);
        setRowOrder(order);
        jpeg_set_defaults(&jpeg);
        jpeg_set_quality(&jpeg, std::clamp(options.jpegQuality.value_or(defaultQuality), 0, 100), TRUE);
        jpeg.optimize_coding = std::int64_t{picture.width} * picture.height <= pixelsWithOwnTables;
        jpeg.density_unit = 1;
        jpeg.X_density = wholeDotsPerInch(options.dpiX);
        jpeg.Y_density = wholeDotsPerInch(options.dpiY);
    }

    void setRowOrder(RowOrder order) {
        switch (order) {
        case RowOrder::Bgr:
            jpeg.in_color_space = JCS_EXT_BGR;
            jpeg.input_components = 3;
            return;
        case RowOrder::Bgrx:
            jpeg.in_color_space = JCS_EXT_BGRX;
            jpeg.input_components = 4;
            return;
        case RowOrder::Rgb:
            jpeg.in_color_space = JCS_RGB;
            jpeg.input_components = 3;
            return;
        case RowOrder::Gray:
            jpeg.in_color_space = JCS_GRAYSCALE;
            jpeg.input_components = 1;
            return;
        }
    }

    jpeg_compress_struct jpeg{};
    EscapingErrors errors{};
    SinkDestination destination{};
};

} // namespace

Result<void> encodeJpeg(const ConstPixelView& picture, const EncodeOptions& options, ByteSink& sink) {
    if (auto fit = checkPicture(picture, "JPEG", JPEG_MAX_DIMENSION); !fit)
        return fit;
    const PictureRows pictureRows(picture);
    SampleRows rows(picture, pictureRows);
    SinkWriter writer(sink);
    JpegCompressor compressor(writer);
    if (!compressor.compress(picture, options, rows))
        return writer.failureOr(compressor.message());
    return writer.finish();
}

} // namespace GdiplusBackend
