#pragma once

#include "PageRasterLib/PdfDocument.h"
#include "PageRasterLib/poppler/PdfFile.h"

#include <PDFDoc.h>

#include <tl/expected.hpp>

#include <memory>

namespace PageRasterLib {

/// A document that poppler has opened.
class PopplerDocument : public IPdfDocument {
public:
    /// An empty user password is tried; for any other the answer is `Encrypted`.
    static tl::expected<std::unique_ptr<PopplerDocument>, PdfState> open(const char* path);

    explicit PopplerDocument(std::shared_ptr<PdfFile> source);

    bool pageSize(int page, PageSize& size) override;
    bool drawPage(int page, const PageSize& size, const PageBuffer& buffer) override;

private:
    PdfState state();
    /// Null without such a page, or when its place in the tree can't be found in bounded time.
    Page* findPage(int page);
    /// The `UserUnit` of ISO 32000-1, table 30: how many times 1/72 inch a unit of the page is.
    double userUnit(const Page& page);

    std::shared_ptr<PdfFile> file;
    PDFDoc document;
};

} // namespace PageRasterLib
