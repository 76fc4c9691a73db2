#pragma once

#include "platform/Export.h"

#include <string>

namespace KestoThumbnailer {

/// Paths as texts, and a few system paths. Without state; any thread.
///
/// A narrow path goes to the C runtime as its bytes stand. Neither `extension` nor `fullPathWithoutExtension`
/// knows of folders: a "." in a folder's name counts, so "C:\a.b\file" splits into "c:\a" and "b\file".
class KESTO_EXPORT FileUtil {
public:
    FileUtil() = delete;

    /// True for a folder, too.
    static bool fileExists(const std::string& path);

    /// Each char through `tolower` by itself.
    static std::string toLower(const std::string& text);

    /// The text after the last ".", in lower case; empty without a ".".
    static std::string extension(const std::string& path);

    /// The text before the last ".", in lower case; without a ".", `path` in its own case.
    static std::string fullPathWithoutExtension(const std::string& path);

    /// Removes the file if it is there. A removal that fails is not reported.
    static void SafeDeleteFile(const std::string& path);

    // NOLINTBEGIN(bugprone-reserved-identifier): the names that callers know.

    /// The folder for temporary files, with a separator at its end. Throws std::runtime_error when the system
    /// tells none.
    static std::wstring _GetTempPath();

    /// The host program's path without as many characters at its end as "KestoThumbnailerTest.exe" has; empty
    /// for a shorter path. Throws std::runtime_error when the system does not tell the path.
    static std::wstring _GetModulePathForKtnTest();

    // NOLINTEND(bugprone-reserved-identifier)
};

} // namespace KestoThumbnailer
