#include "PageRasterLib/poppler/PopplerDocument.h"

#include "PageRasterLib/poppler/PageCanvas.h"
#include "PageRasterLib/poppler/PageTree.h"
#include "PageRasterLib/poppler/PopplerRuntime.h"

#include <Catalog.h>
#include <ErrorCodes.h>
#include <Page.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace PageRasterLib {

namespace {

constexpr double dotsPerPoint = 96.0 / 72.0;
constexpr double tooLongForASide = 1e6; ///< pixels; far above what is drawn, far below what overflows
/// The memory of a canvas, 5 bytes a pixel, and of each layer of transparency on it stays below this.
constexpr int canvasPixels = 16'000'000;

/// What of a page is shown, in its own units, turned as it is shown.
struct ShownArea {
    bool isMediaBox = false;
    double width = 0;
    double height = 0;
};

/// The crop box; the media box where the crop box leaves nothing.
ShownArea shownArea(const Page& page) {
    ShownArea area{false, page.getCropWidth(), page.getCropHeight()};
    if (!(area.width > 0 && area.height > 0))
        area = {true, page.getMediaWidth(), page.getMediaHeight()};
    if (page.getRotate() % 180 != 0)
        std::swap(area.width, area.height);
    return area;
}

int toPixels(double points) {
    return std::max(1, static_cast<int>(std::lround(points * dotsPerPoint)));
}

bool isDrawable(const ShownArea& area, double unit) {
    constexpr double longest = tooLongForASide / dotsPerPoint;
    return area.width > 0 && area.height > 0 && area.width * unit < longest && area.height * unit < longest;
}

bool mustStop(void* timeLimit) {
    return static_cast<const TimeLimit*>(timeLimit)->isPassed();
}

} // namespace

tl::expected<std::unique_ptr<PopplerDocument>, PdfState> PopplerDocument::open(const char* path) {
    auto file = PdfFile::open(path);
    if (!file)
        return tl::unexpected(file.error());
    startPoppler();
    auto opened = std::make_unique<PopplerDocument>(std::move(*file));
    const PdfState state = opened->state();
    if (state != PdfState::Readable)
        return tl::unexpected(state);
    return opened;
}

PopplerDocument::PopplerDocument(std::shared_ptr<PdfFile> source)
    : file(std::move(source))
    , document(new PdfFileStream(file, 0, false, file->size(), Object(objNull))) {}

PdfState PopplerDocument::state() {
    if (!document.isOk())
        return document.getErrorCode() == errEncrypted ? PdfState::Encrypted : PdfState::Damaged;
    if (document.getCatalog()->getNumPages() > 0)
        return PdfState::Readable;
    return saysNoPages(document) ? PdfState::Empty : PdfState::Damaged;
}

Page* PopplerDocument::findPage(int page) {
    // Past the hint tables of linearised documents, which leave out what a page inherits.
    Catalog& catalog = *document.getCatalog();
    if (page < 1 || page > catalog.getNumPages() || !pageIsInReach(document, page))
        return nullptr;
    return catalog.getPage(page);
}

double PopplerDocument::userUnit(const Page& page) {
    Object dictionary = document.getXRef()->fetch(const_cast<Page&>(page).getRef());
    if (!dictionary.isDict())
        return 1;
    const Object unit = dictionary.dictLookup("UserUnit");
    return unit.isNum() && unit.getNum() > 0 ? unit.getNum() : 1;
}

bool PopplerDocument::pageSize(int page, PageSize& size) {
    if (!file->timeLimit.begin())
        return false;
    const Page* found = findPage(page);
    if (!found)
        return false;
    const ShownArea area = shownArea(*found);
    const double unit = userUnit(*found);
    if (!isDrawable(area, unit))
        return false;
    size = {toPixels(area.width * unit), toPixels(area.height * unit)};
    return !file->timeLimit.isPassed();
}

bool PopplerDocument::drawPage(int page, const PageSize& size, const PageBuffer& buffer) {
    if (!file->timeLimit.begin())
        return false;
    Page* found = findPage(page);
    if (!found)
        return false;
    const ShownArea area = shownArea(*found);
    if (!isDrawable(area, 1))
        return false;
    const double horizontalDpi = 72.0 * size.width / area.width;
    const double verticalDpi = 72.0 * size.height / area.height;
    const int bandHeight = std::max(1, canvasPixels / size.width);
    PageCanvas canvas(file->timeLimit);
    canvas.startDoc(&document);
    for (int top = 0; top < size.height; top += bandHeight) {
        const PageSize band{size.width, std::min(bandHeight, size.height - top)};
        found->displaySlice(&canvas, horizontalDpi, verticalDpi, 0, area.isMediaBox, !area.isMediaBox, 0, top,
                            band.width, band.height, false, &mustStop, &file->timeLimit);
        if (file->timeLimit.isPassed() || !canvas.putOnPaper(band, buffer, top))
            return false;
    }
    return true;
}

} // namespace PageRasterLib
