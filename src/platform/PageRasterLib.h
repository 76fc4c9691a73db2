#pragma once

#include "platform/Export.h"

#include <memory>
#include <string>

namespace PageRasterLib {

/// Why a document has no pages to draw.
enum class PdfState {
    Readable,
    Unreadable, ///< missing, no regular file, or not to be opened
    Empty,      ///< a file of no bytes, or a document of no pages
    NotAPdf,
    Damaged,
    Encrypted,   ///< it asks for a password
    Unavailable, ///< the rasteriser's module is not installed
};

/// The pages of a PDF document (ISO 32000-1), counted from 1. The document is opened by the constructor; a
/// document that can't be read answers every call with false. One thread at a time for one object; different
/// objects are independent.
class KESTO_EXPORT Pdf {
public:
    /// `path` is UTF-8.
    explicit Pdf(const std::string& path);
    ~Pdf();
    Pdf(const Pdf&) = delete;
    Pdf& operator=(const Pdf&) = delete;

    /// The size of the page as it is shown, after its own rotation, in pixels at 96 dots per inch, at least 1
    /// each. False without such a page; `width` and `height` then stay as they are.
    bool DefaultDimensions(int page, int& width, int& height) const;

    /// Draws the page at `width` by `height` pixels on white paper into `pixels`, `stride` bytes from a row
    /// to the next below it: premultiplied B, G, R, A in memory. False on failure, with the pixels undefined.
    bool Rasterize(int width, int height, int page, void* pixels, int stride) const;

    PdfState State() const;

private:
    class Impl;
    std::unique_ptr<Impl> impl;
};

/// Whether the rasteriser's module is installed; it is not loaded to find out. Any thread.
KESTO_EXPORT bool IsRasterizerInstalled();

} // namespace PageRasterLib
