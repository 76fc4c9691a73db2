#pragma once

#include <string>

namespace TestSupport {

/// A document (ISO 32000-1) of at most one page.
struct PdfFile {
    int widthInPoints = 0; ///< 1/72 inch
    int heightInPoints = 0;
    std::string content = {}; ///< the page's drawing operators
    int pages = 1;            ///< 0 or 1
    bool encrypted = false;   ///< under a password that is not empty

    std::string text() const;
};

} // namespace TestSupport
