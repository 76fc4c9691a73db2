#pragma once

#include "platform/PageRasterLib.h"

namespace PageRasterLib {

/// In pixels.
struct PageSize {
    int width = 0;
    int height = 0;
};

/// Where the rows of a page go: `stride` bytes from a row to the next below it, at least 4 * width either
/// way.
struct PageBuffer {
    unsigned char* pixels = nullptr;
    int stride = 0;
};

/// An open document, as the rasteriser's module hands it over. Pages count from 1; one thread at a time.
class IPdfDocument {
public:
    virtual ~IPdfDocument() = default;

    /// As `Pdf::DefaultDimensions`.
    virtual bool pageSize(int page, PageSize& size) = 0;
    /// As `Pdf::Rasterize`.
    virtual bool drawPage(int page, const PageSize& size, const PageBuffer& buffer) = 0;
};

/// The module's one entry point, a C function. `path` is a file's name in bytes. `*document` becomes the
/// caller's when the result is `Readable`, and is left alone otherwise. Any thread.
using OpenPdfDocument = PdfState(const char* path, IPdfDocument** document);

constexpr const char* openPdfDocumentName = "kestoOpenPdfDocument";

} // namespace PageRasterLib
