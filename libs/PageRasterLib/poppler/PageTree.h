#pragma once

class PDFDoc;

namespace PageRasterLib {

/// Whether a walk down the page tree (ISO 32000-1, 7.7.3) comes to the page, counted from 1, within a bounded
/// number of steps. poppler's own walk has no bound: nodes that share their children make it take for ever.
bool pageIsInReach(PDFDoc& document, int page);

/// Whether the tree's root says that there are no pages, which is no damage.
bool saysNoPages(PDFDoc& document);

} // namespace PageRasterLib
