#pragma once

#include "platform/Export.h"

#include <string>

namespace KestoThumbnailer {

/// Why `GetThumbnailForImage` gave null.
enum class NoThumbnailReason {
    NothingWrong, ///< the file reads well; it may have changed meanwhile, or memory was short
    Missing,
    NotAFile, ///< a folder, a pipe, a device
    Unreadable,
    Empty,
    UnknownFormat,
    Truncated,
    Damaged,
    TooLarge, ///< over the pixel budget, or over the memory at hand
    Encrypted,
    NoPages,
    Unavailable, ///< GDI+ is not started, or a part of the library is not installed
};

struct ThumbnailDiagnosis {
    NoThumbnailReason reason = NoThumbnailReason::NothingWrong;
    std::string sentence; ///< English, in UTF-8, and names the file
};

/// The word for a reason, which never changes: "missing", "not-a-file", "unknown-format" ...
KESTO_EXPORT const char* WordForReason(NoThumbnailReason reason);

/// Reads the file anew, as `GetThumbnailForImage` does, and tells what stands against a thumbnail of it. To
/// be asked after a null thumbnail: it decodes the whole picture. Any thread.
KESTO_EXPORT ThumbnailDiagnosis DiagnoseStillImage(const std::wstring& path);

} // namespace KestoThumbnailer
