#include "gdiplus/codecs/jpegdecoder/JpegReader.h"

#include <jerror.h>

#include <algorithm>
#include <array>

namespace GdiplusBackend {

namespace {

constexpr std::size_t bufferBytes = std::size_t{128} * 1024;
/// For who reads no further than the header.
constexpr std::size_t headerBufferBytes = std::size_t{16} * 1024;
/// What may come before the first scan: room for large metadata, but not for a file that is nothing else.
constexpr std::uint64_t longestHeader = std::uint64_t{64} << 20;
constexpr unsigned int longestMarker = 0xFFFF;

} // namespace

JpegReader::JpegReader(const ByteSource& source)
    : input(source) {
    info.err = jpeg_std_error(&errors);
    errors.error_exit = escapeFrom;
    errors.emit_message = countWarning;
    errors.output_message = [](j_common_ptr) {};
    input.next_input_byte = nullptr;
    input.bytes_in_buffer = 0;
    input.init_source = [](j_decompress_ptr) {};
    input.fill_input_buffer = fillBuffer;
    input.skip_input_data = skipBytes;
    input.resync_to_restart = jpeg_resync_to_restart;
    input.term_source = [](j_decompress_ptr) {};
    progress.progress_monitor = refuseTooManyScans;
}

JpegReader::~JpegReader() {
    jpeg_destroy_decompress(&info);
}

Result<void> JpegReader::readHeader(Markers markers) {
    input.limit = longestHeader;
    input.buffer.resize(markers == Markers::Keep ? headerBufferBytes : bufferBytes);
    Result<void> done = run([&] {
        jpeg_create_decompress(&info);
        info.src = &input;
        info.progress = &progress;
        if (markers == Markers::Keep) {
            jpeg_save_markers(&info, JPEG_APP0 + 1, longestMarker);
            jpeg_save_markers(&info, JPEG_APP0 + 2, longestMarker);
        }
        (void)jpeg_read_header(&info, TRUE); // an error is the only other outcome: the source never suspends
    });
    input.limit = UINT64_MAX;
    return done;
}

LoadError JpegReader::failure() {
    if (errors.refusal)
        return {errors.status, std::string("JPEG: ") + errors.refusal};
    std::array<char, JMSG_LENGTH_MAX> text = {};
    errors.format_message(reinterpret_cast<j_common_ptr>(&info), text.data());
    const bool memory = errors.msg_code == JERR_OUT_OF_MEMORY || errors.msg_code == JERR_IMAGE_TOO_BIG ||
                        errors.msg_code == JERR_WIDTH_OVERFLOW;
    return {memory ? Gdiplus::OutOfMemory : Gdiplus::GenericError, std::string("JPEG: ") + text.data()};
}

void JpegReader::escapeFrom(j_common_ptr decompressor) {
    std::longjmp(static_cast<ErrorManager*>(decompressor->err)->escape, 1); // NOLINT(cert-err52-cpp)
}

void JpegReader::refuse(j_common_ptr decompressor, Gdiplus::Status status, const char* why) {
    auto& errors = *static_cast<ErrorManager*>(decompressor->err);
    errors.status = status;
    errors.refusal = why;
    escapeFrom(decompressor);
}

void JpegReader::countWarning(j_common_ptr decompressor, int level) noexcept {
    if (level < 0)
        ++decompressor->err->num_warnings;
}

void JpegReader::refuseTooManyScans(j_common_ptr decompressor) {
    if (reinterpret_cast<j_decompress_ptr>(decompressor)->input_scan_number > mostScans)
        refuse(decompressor, Gdiplus::GenericError, "more scans than any encoder writes");
}

JpegReader::SourceManager& JpegReader::sourceOf(j_decompress_ptr decompressor) {
    return *static_cast<SourceManager*>(decompressor->src);
}

boolean JpegReader::fillBuffer(j_decompress_ptr decompressor) {
    SourceManager& source = sourceOf(decompressor);
    const auto common = reinterpret_cast<j_common_ptr>(decompressor);
    if (source.cursor.position() >= source.limit)
        refuse(common, Gdiplus::OutOfMemory, "the metadata is too long");
    const std::size_t count = source.cursor.read(source.buffer);
    // libjpeg's own sources pretend an end marker here and go on with grey; for us the picture is lost.
    if (count == 0)
        refuse(common, Gdiplus::Aborted, "the file ends before the picture does");
    source.next_input_byte = reinterpret_cast<const JOCTET*>(source.buffer.data());
    source.bytes_in_buffer = count;
    return TRUE;
}

void JpegReader::skipBytes(j_decompress_ptr decompressor, long count) {
    if (count <= 0)
        return;
    SourceManager& source = sourceOf(decompressor);
    const std::size_t wanted = static_cast<std::size_t>(count);
    const std::size_t buffered = std::min(wanted, source.bytes_in_buffer);
    source.next_input_byte += buffered;
    source.bytes_in_buffer -= buffered;
    source.cursor.seek(source.cursor.position() + (wanted - buffered));
}

} // namespace GdiplusBackend
