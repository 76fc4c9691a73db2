#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/codecs/ByteSource.h"

#include <libheif/heif.h>

#include <memory>

namespace GdiplusBackend {

struct HeifDeleter {
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image* image) const { heif_image_release(image); }
    void operator()(heif_decoding_options* options) const { heif_decoding_options_free(options); }
};
template <typename T>
using HeifPtr = std::unique_ptr<T, HeifDeleter>;

/// A HEIF file over a byte source. One thread at a time.
class HeifFile {
public:
    static Result<std::unique_ptr<HeifFile>> open(std::shared_ptr<const ByteSource> source);

    heif_image_handle* primary() const { return handle.get(); }

    /// The primary picture as interleaved R, G, B (, A) of 8 bits.
    Result<HeifPtr<heif_image>> decode();

private:
    struct Callbacks;

    explicit HeifFile(std::shared_ptr<const ByteSource> bytes);
    Result<void> readBoxes();
    /// `Aborted` when the file had fewer bytes than were asked for.
    tl::unexpected<LoadError> failure(const heif_error& error) const;

    std::shared_ptr<const ByteSource> source;
    ByteCursor cursor;
    bool sawEnd = false;
    HeifPtr<heif_context> context;
    HeifPtr<heif_image_handle> handle;
};

} // namespace GdiplusBackend
