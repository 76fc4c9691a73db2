#include "KestoRenderLib/project/MediaFile.h"
#include "KestoRenderLib/project/PathText.h"
#include "KestoRenderLib/project/RenderBudget.h"

#include "KestoMediaLib/ProjectFile.h"
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

/// A project of which no frame could be rendered is none.
ProjectOutcome renderable(const ReadProject& read, const std::string& name) {
    if (!read)
        return {{}, read.error().text()};
    const KestoRenderLib::Size canvas = canvasSizeOf(**read);
    if (!isWithinBudget(canvas))
        return {{},
                fmt::format("{}: the canvas of {} x {} pixels has more than the budget (KESTO_PIXEL_BUDGET)",
                            name, canvas.width, canvas.height)};
    return {*read, {}};
}

} // namespace

ProjectOutcome ProjectGenerator::TryProjectFromFile(const std::string& path) {
    if (hasExtension(path, "qrlproj"))
        return renderable(readProjectFile(path), path);
    const auto file = openMediaFile(path);
    return file ? projectOf(*file, file->frameRate) : ProjectOutcome{{}, file.error()};
}

ProjectOutcome ProjectGenerator::TryProjectFromJson(const std::string& json, const std::string& basePath) {
    return renderable(readProjectText(json, basePath), "project");
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
