#include "gdiplus/codecs/modules/HeifFile.h"

#include <array>
#include <new>
#include <span>
#include <string>

namespace GdiplusBackend {

namespace {

std::uint64_t bigEndian(std::span<const std::byte> bytes) {
    std::uint64_t value = 0;
    for (const std::byte byte : bytes)
        value = value << 8U | std::to_integer<std::uint64_t>(byte);
    return value;
}

/// Whether each top-level box lies whole in the file (ISO/IEC 14496-12, 4.2).
Result<void> checkBoxes(const ByteSource& source) {
    constexpr std::uint64_t headerBytes = 8;
    std::uint64_t place = 0;
    while (place < source.size()) {
        std::array<std::byte, 16> head = {};
        const std::size_t got = source.read(place, head);
        std::uint64_t length = bigEndian(std::span(head).first(4));
        if (got < headerBytes || (length == 1 && got < head.size()))
            return truncated("the HEIF file ends within a box's header");
        if (length == 0) // up to the end
            return {};
        if (length == 1)
            length = bigEndian(std::span(head).subspan(headerBytes));
        if (length < headerBytes)
            return damaged("HEIF: a box is shorter than its header");
        if (length > source.size() - place)
            return truncated("the HEIF file ends within a box");
        place += length;
    }
    return {};
}

} // namespace

struct HeifFile::Callbacks {
    static HeifFile& self(void* file) { return *static_cast<HeifFile*>(file); }

    static int64_t position(void* file) { return static_cast<int64_t>(self(file).cursor.position()); }

    static int read(void* out, size_t count, void* file) {
        const std::size_t got = self(file).cursor.read({static_cast<std::byte*>(out), count});
        self(file).sawEnd |= got < count;
        return got == count ? 0 : -1;
    }

    static int seek(int64_t place, void* file) {
        self(file).cursor.seek(static_cast<std::uint64_t>(place));
        return 0;
    }

    static heif_reader_grow_status waitForSize(int64_t size, void* file) {
        if (static_cast<std::uint64_t>(size) <= self(file).source->size())
            return heif_reader_grow_status_size_reached;
        return heif_reader_grow_status_size_beyond_eof; // also asked when the last box has been read
    }
};

HeifFile::HeifFile(std::shared_ptr<const ByteSource> bytes)
    : source(std::move(bytes))
    , cursor(*source)
    , context(heif_context_alloc()) {
    if (!context)
        throw std::bad_alloc();
}

Result<std::unique_ptr<HeifFile>> HeifFile::open(std::shared_ptr<const ByteSource> source) {
    if (const auto whole = checkBoxes(*source); !whole)
        return tl::unexpected(whole.error());
    std::unique_ptr<HeifFile> file(new HeifFile(std::move(source)));
    if (const auto read = file->readBoxes(); !read)
        return tl::unexpected(read.error());
    return file;
}

Result<void> HeifFile::readBoxes() {
    static constexpr heif_reader reader = {1, Callbacks::position, Callbacks::read, Callbacks::seek,
                                           Callbacks::waitForSize};
    if (const auto error = heif_context_read_from_reader(context.get(), &reader, this, nullptr); error.code)
        return failure(error);
    heif_image_handle* found = nullptr;
    if (const auto error = heif_context_get_primary_image_handle(context.get(), &found); error.code)
        return failure(error);
    handle.reset(found);
    return {};
}

Result<HeifPtr<heif_image>> HeifFile::decode() {
    const HeifPtr<heif_decoding_options> options(heif_decoding_options_alloc());
    if (!options)
        throw std::bad_alloc();
    options->convert_hdr_to_8bit = 1;
    options->strict_decoding = 1;
    const bool hasAlpha = heif_image_handle_has_alpha_channel(handle.get()) != 0;
    heif_image* decoded = nullptr;
    const auto error = heif_decode_image(
        handle.get(), &decoded, heif_colorspace_RGB,
        hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, options.get());
    HeifPtr<heif_image> image(decoded);
    if (error.code)
        return failure(error);
    if (sawEnd)
        return truncated("the HEIF file ends before its picture does");
    return image;
}

tl::unexpected<LoadError> HeifFile::failure(const heif_error& error) const {
    const std::string message = error.message ? error.message : "HEIF";
    if (error.subcode == heif_suberror_Security_limit_exceeded)
        return tooLarge(message);
    if (sawEnd || error.subcode == heif_suberror_End_of_data)
        return truncated(message);
    if (error.code == heif_error_Memory_allocation_error)
        return tooLarge(message);
    if (error.code == heif_error_Unsupported_filetype || error.code == heif_error_Unsupported_feature)
        return tl::unexpected(LoadError{Gdiplus::UnknownImageFormat, message});
    return damaged(message);
}

} // namespace GdiplusBackend
