#include "PageRasterLib/poppler/PopplerDocument.h"

#include "platform/Export.h"

extern "C" KESTO_EXPORT PageRasterLib::OpenPdfDocument kestoOpenPdfDocument;

PageRasterLib::PdfState kestoOpenPdfDocument(const char* path, PageRasterLib::IPdfDocument** document) {
    auto opened = PageRasterLib::PopplerDocument::open(path);
    if (!opened)
        return opened.error();
    *document = opened->release();
    return PageRasterLib::PdfState::Readable;
}
