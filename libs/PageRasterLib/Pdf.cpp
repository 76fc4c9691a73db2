#include "platform/PageRasterLib.h"

#include "PageRasterLib/RasterModule.h"

#include "system/PathResolver.h"

#include <cstdint>
#include <cstdlib>

namespace PageRasterLib {

namespace {

constexpr int longestSide = 32767;

bool isSide(int length) {
    return length >= 1 && length <= longestSide;
}

} // namespace

class Pdf::Impl {
public:
    explicit Impl(const std::string& path) {
        OpenPdfDocument* const open = openPdfDocumentFunction();
        if (!open)
            return;
        IPdfDocument* opened = nullptr;
        state = open(SystemBackend::resolvePath(path).c_str(), &opened);
        document.reset(opened);
    }

    std::unique_ptr<IPdfDocument> document;
    PdfState state = PdfState::Unavailable;
};

Pdf::Pdf(const std::string& path)
    : impl(std::make_unique<Impl>(path)) {}

Pdf::~Pdf() = default;

PdfState Pdf::State() const {
    return impl->state;
}

bool Pdf::DefaultDimensions(int page, int& width, int& height) const {
    PageSize size;
    if (!impl->document || !impl->document->pageSize(page, size) || !isSide(size.width) ||
        !isSide(size.height))
        return false;
    width = size.width;
    height = size.height;
    return true;
}

bool Pdf::Rasterize(int width, int height, int page, void* pixels, int stride) const {
    if (!impl->document || !pixels || !isSide(width) || !isSide(height))
        return false;
    if (std::abs(std::int64_t{stride}) < std::int64_t{width} * 4)
        return false;
    return impl->document->drawPage(page, {width, height}, {static_cast<unsigned char*>(pixels), stride});
}

} // namespace PageRasterLib
