#pragma once

#include "platform/Export.h"
#include "platform/KestoMediaLib.h"

#include <boost/shared_ptr.hpp>
#include <tl/expected.hpp>

#include <string>
#include <string_view>

namespace KestoMediaLib {

/// Why a project could not be read, and where.
struct KESTO_EXPORT ProjectFileError {
    enum class Fault {
        Unreadable, ///< there is no such file, or it cannot be read, or it is too large
        Malformed,  ///< the text is not JSON, or nested too deep, or of too many values
        Foreign,    ///< another format, or a version that is not known
        Invalid,    ///< a value is missing or wrong; also stitched media that hold themselves
    };

    Fault fault = Fault::Invalid;
    std::string file;    ///< as the caller named it
    std::string pointer; ///< to the value, as of RFC 6901; empty for the whole
    std::string message; ///< what was expected, and what was found

    /// All in one line.
    std::string text() const;
};

using ReadProject = tl::expected<boost::shared_ptr<Project>, ProjectFileError>;

/// Reads a project file; docs/project-format.md tells the format. Files inside count from the folder of
/// `path`, which is UTF-8; they need not be there. Any thread.
KESTO_EXPORT ReadProject readProjectFile(const std::string& path);

/// Reads the text of a project file. Files inside count from `basePath`, or stay as they are if it is empty.
/// `name` stands for the text in errors.
KESTO_EXPORT ReadProject readProjectText(std::string_view text, const std::string& basePath,
                                         const std::string& name = "project");

} // namespace KestoMediaLib
