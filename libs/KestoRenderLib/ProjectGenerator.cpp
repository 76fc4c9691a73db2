#include "KestoRenderLib/project/MediaFile.h"
#include "KestoRenderLib/project/PathText.h"

#include "KestoMediaLib/ProjectModel.h"
#include "platform/KestoRenderProject.h"

#include <boost/make_shared.hpp>
#include <fmt/format.h>

namespace KestoRenderLib {

namespace {

using namespace KestoMediaLib;

ProjectOutcome projectOf(const MediaFile& file, const boost::rational<unsigned long>& frameRate) {
    const auto project = boost::make_shared<ProjectModel>(frameRate);
    const auto timeline = project->editableTimeline();
    timeline->setWidth(static_cast<float>(file.size.width));
    timeline->setHeight(static_cast<float>(file.size.height));
    const auto track = boost::make_shared<TrackModel>();
    track->addMedia(file.media);
    timeline->editableMixer()->addTrack(track);
    return {project, {}};
}

} // namespace

ProjectOutcome ProjectGenerator::TryProjectFromFile(const std::string& path) {
    if (hasExtension(path, "qrlproj"))
        return {{}, fmt::format("{}: project files can't be read yet", path)}; // FIXME: they can't
    const auto file = openMediaFile(path);
    return file ? projectOf(*file, file->frameRate) : ProjectOutcome{{}, file.error()};
}

// FIXME: project files can't be read yet.
ProjectOutcome ProjectGenerator::TryProjectFromJson(const std::string&, const std::string&) {
    return {{}, "project files can't be read yet"};
}

ProjectOutcome ProjectGenerator::TryMediaProject(const std::string& path,
                                                 const boost::rational<unsigned long>& frameRate) {
    if (frameRate.numerator() == 0)
        return {{}, fmt::format("{}: expected a frame rate above 0", path)};
    const auto file = openMediaFile(path);
    return file ? projectOf(*file, frameRate) : ProjectOutcome{{}, file.error()};
}

boost::shared_ptr<Project>
ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(const std::string& path) {
    return TryProjectFromFile(path).project;
}

boost::shared_ptr<Project>
ProjectGenerator::CreateProjectFromQrlprojJsonContent(const std::string& json, const std::string& basePath) {
    return TryProjectFromJson(json, basePath).project;
}

boost::shared_ptr<Project>
ProjectGenerator::Create_MediaProject(const std::string& path,
                                      const boost::rational<unsigned long>& frameRate) {
    return TryMediaProject(path, frameRate).project;
}

} // namespace KestoRenderLib
