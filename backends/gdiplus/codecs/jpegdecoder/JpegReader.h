#pragma once

#include "gdiplus/codecs/ByteSource.h"

#include <cstdio> // jpeglib.h needs FILE

#include <jpeglib.h>

#include <csetjmp>
#include <cstdint>
#include <vector>

namespace GdiplusBackend {

/// The decompression object of libjpeg over a byte source. Stays where it is made: libjpeg points into it.
class JpegReader {
public:
    explicit JpegReader(const ByteSource& source);
    ~JpegReader();
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    /// Encoders write about ten. Each scan walks over the whole picture, however few bytes it has.
    static constexpr int mostScans = 100;

    jpeg_decompress_struct info = {};

    /// Reads up to the first scan: `Keep` to look at the application segments 1 and 2, `Skip` to decode.
    enum class Markers { Skip, Keep };
    Result<void> readHeader(Markers markers);

    /// Where the next byte that libjpeg has not seen lies in the source.
    std::uint64_t position() const { return input.cursor.position() - input.bytes_in_buffer; }

    /// Runs calls of libjpeg. An error leaves `call` by a long jump, so nothing in it may need a destructor.
    template <typename Call>
    [[gnu::noinline]] Result<void> run(Call call) {
        if (setjmp(errors.escape) != 0) // NOLINT(cert-err52-cpp): the library's way to report errors
            return tl::unexpected(failure());
        call();
        return {};
    }

private:
    struct ErrorManager : jpeg_error_mgr {
        std::jmp_buf escape;
        const char* refusal = nullptr; ///< ours; null: an error of libjpeg
        Gdiplus::Status status = Gdiplus::GenericError;
    };
    struct SourceManager : jpeg_source_mgr {
        explicit SourceManager(const ByteSource& source)
            : cursor(source) {}
        ByteCursor cursor;
        std::uint64_t limit = UINT64_MAX; ///< reading beyond this place is an error
        std::vector<std::byte> buffer;
    };

    LoadError failure();

    [[noreturn]] static void escapeFrom(j_common_ptr decompressor);
    [[noreturn]] static void refuse(j_common_ptr decompressor, Gdiplus::Status status, const char* why);
    static void countWarning(j_common_ptr decompressor, int level) noexcept;
    static void refuseTooManyScans(j_common_ptr decompressor);
    static boolean fillBuffer(j_decompress_ptr decompressor);
    static void skipBytes(j_decompress_ptr decompressor, long count);
    static SourceManager& sourceOf(j_decompress_ptr decompressor);

    ErrorManager errors;
    SourceManager input;
    jpeg_progress_mgr progress = {};
};

} // namespace GdiplusBackend
