#pragma once

#include "PageRasterLib/PdfDocument.h"

namespace PageRasterLib {

/// The entry point of `kesto_pdf.so`, which lies in the folder `KestoThumbnailer` beside this library. The
/// first call loads it, for good; null when it is missing or is not ours. Any thread.
OpenPdfDocument* openPdfDocumentFunction();

} // namespace PageRasterLib
