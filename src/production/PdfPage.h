#pragma once

#include "platform/Gdiplus.h"

#include <string>

namespace KestoThumbnailer {

/// By the extension "pdf" in any case; see `ExtensionOf`.
bool HasPdfExtension(const std::wstring& path);

/// The first page of a document at its default size, in `32bppPARGB`. The caller owns it; null when the page
/// can't be drawn.
Gdiplus::Bitmap* GetThumbnailForPdf(const std::wstring& path);

} // namespace KestoThumbnailer
