#pragma once

#include "KestoMediaLib/ProjectFile.h"
#include "KestoMediaLib/ProjectModel.h"

#include <boost/pointer_cast.hpp>

#include <stdexcept>
#include <string>

namespace MediaTest {

/// A project text; each part can be put in other words.
struct ProjectText {
    std::string canvas = R"({"width": 640, "height": 360})";
    std::string frameRate = "30";
    std::string library = "{}";
    std::string tracks = "[]";
    std::string version = "2";

    /// On one track.
    static ProjectText ofMedia(const std::string& media) {
        ProjectText text;
        text.tracks = R"([{"media": [)" + media + "]}]";
        return text;
    }

    std::string text() const {
        return R"({"format": "kesto-project", "version": )" + version + R"(, "canvas": )" + canvas +
               R"(, "frameRate": )" + frameRate + R"(, "library": )" + library + R"(, "tracks": )" + tracks +
               "}";
    }
};

inline KestoMediaLib::ReadProject read(const ProjectText& project) {
    return KestoMediaLib::readProjectText(project.text(), "/base", "demo.qrlproj");
}

/// In one line; "read" if there is none.
inline std::string errorOf(const ProjectText& project) {
    const auto result = read(project);
    return result ? "read" : result.error().text();
}

/// Throws if the project cannot be read.
inline boost::shared_ptr<KestoMediaLib::Project> readWhole(const ProjectText& project) {
    const auto result = read(project);
    if (!result)
        throw std::runtime_error(result.error().text());
    return *result;
}

/// The only media of a project of one track, as the class it is; null if it is another.
template <class Class>
boost::shared_ptr<const Class> onlyMedia(const std::string& media) {
    const auto project = readWhole(ProjectText::ofMedia(media));
    return boost::dynamic_pointer_cast<const Class>(
        project->timeline()->mixer()->tracks().at(0)->medias().at(0));
}

} // namespace MediaTest
